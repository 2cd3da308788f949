#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>

#include "platform/Files.h"
#include "tests/w3c/Suite.h"
#include "tests/xml/scan/GateAgreement.h"
#include "text/Utf.h"
#include "xml/Encoding.h"

namespace zupm::test {
namespace {

/// The text of a document; nothing when its bytes are not valid in their encoding.
std::optional<std::string> TextOf(const SuiteDocument& document)
{
    std::string bytes;
    EXPECT_GE(zupm::ReadWholeFile(zupm::ToUtf16Lossy(document.path), bytes), 0) << document.path;
    std::optional<AdvXMLParser::XmlText> text = AdvXMLParser::Decode(bytes, AdvXMLParser::DetectEncoding(bytes));
    return text ? std::optional(std::move(*text).TakeUtf8()) : std::nullopt;
}

TEST(Scanner, AgreesWithTheGateOnEveryDocument)
{
    if (!HasSuite()) {
        std::printf("The W3C suite is not there: nothing was tested.\n");
        return;
    }
    int documents = 0;
    int accepted = 0;
    int acceptedByGate = 0;
    for (const char* suiteClass : {"REJECT_ALL", "REJECT_5E", "REJECT_4E", "ACCEPT", "ACCEPT_5E_ONLY",
                                   "EXTERNAL_NOFETCH", "NS_REJECT", "NS_ACCEPT", "NOCRASH", "XML11_NOCRASH"}) {
        for (const SuiteDocument& document : DocumentsOf(suiteClass)) {
            const std::optional<std::string> text = TextOf(document);
            if (!text) {
                continue;
            }
            const AdvXMLParser::Agreement agreement = AdvXMLParser::CompareWithGate(*text);
            EXPECT_EQ(agreement.difference, "") << document.id << " " << document.path;
            EXPECT_FALSE(agreement.isPassedOnNeedlessly) << document.id << " " << document.path;
            ++documents;
            accepted += agreement.isAcceptedByScanner ? 1 : 0;
            acceptedByGate += agreement.isAcceptedByGate ? 1 : 0;
        }
    }
    std::printf("%d documents: the scanner accepted %d, the gate %d\n", documents, accepted, acceptedByGate);
    EXPECT_GT(accepted, 0);
}

}  // namespace
}  // namespace zupm::test
