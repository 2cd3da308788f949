#include "tests/w3c/Suite.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "platform/Files.h"
#include "tests/w3c/SuiteFolder.h"
#include "text/Utf.h"
#include "xml/Encoding.h"
#include "xml/Exceptions.h"
#include "xml/FileBuffer.h"
#include "xml/Parser.h"

namespace zupm::test {

namespace {

// Columns of the manifest.
constexpr std::size_t kClass = 0;
constexpr std::size_t kId = 1;
constexpr std::size_t kPath = 12;

std::vector<std::string> Cells(const std::string& line)
{
    std::vector<std::string> cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, '\t');) {
        cells.push_back(cell);
    }
    return cells;
}

std::string FileOf(const std::string& relative)
{
    for (const char* below : {"", "files/"}) {
        const std::filesystem::path path = std::filesystem::path(kSuiteFolder) / below / relative;
        if (std::filesystem::exists(path)) {
            return path.string();
        }
    }
    throw std::runtime_error("the suite lacks " + relative);
}

}  // namespace

bool HasSuite()
{
    return std::filesystem::exists(std::filesystem::path(kSuiteFolder) / "MANIFEST.tsv");
}

std::vector<SuiteDocument> DocumentsOf(const std::string& suiteClass)
{
    std::vector<SuiteDocument> documents;
    std::ifstream manifest(std::filesystem::path(kSuiteFolder) / "MANIFEST.tsv");
    for (std::string line; std::getline(manifest, line);) {
        const std::vector<std::string> cells = Cells(line);
        if (cells.size() > kPath && cells[kClass] == suiteClass) {
            documents.push_back({cells[kId], FileOf(cells[kPath])});
        }
    }
    return documents;
}

Outcome Load(const SuiteDocument& document)
{
    Outcome outcome;
    const std::u16string path = zupm::ToUtf16Lossy(document.path);
    try {
        AdvXMLParser::XmlText text;
        AdvXMLParser::UTF_ENCODINGS encoding{};
        AdvXMLParser::ReadBufferFromFile(path, text, encoding, true);
        outcome.declaresEntities = text.Utf8().find("<!ENTITY") != std::string::npos;
        const auto loaded = AdvXMLParser::Parser().Parse(std::move(text));
        outcome.isAccepted = true;
        std::string bytes;
        const bool isRead = zupm::ReadWholeFile(path, bytes) == 0;
        outcome.isRewrittenByteForByte =
            isRead && AdvXMLParser::Encode(loaded->GenerateXML(false).Utf8(), encoding, true) == bytes;
    } catch (const AdvXMLParser::ParsingException& failure) {
        outcome.refusal =
            std::to_string(failure.GetLine()) + ":" + std::to_string(failure.GetColumn()) + ": " + failure.GetReason();
    } catch (const AdvXMLParser::ReadWriteException& failure) {
        outcome.refusal = "code " + std::to_string(failure.GetErrorCode());
    }
    return outcome;
}

}  // namespace zupm::test
