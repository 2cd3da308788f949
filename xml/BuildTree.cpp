#include "xml/BuildTree.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/Files.h"
#include "xml/Encoding.h"
#include "xml/Exceptions.h"
#include "xml/ExpatGate.h"
#include "xml/RecordBuilder.h"
#include "xml/scan/Scanner.h"

namespace AdvXMLParser {

namespace {

std::uint32_t SizeOf(const std::string& text) noexcept
{
    return static_cast<std::uint32_t>(text.size());
}

bool MayDeclare(const ScannedDocument& document, std::optional<UTF_ENCODINGS> encoding) noexcept
{
    return document.declaredEncoding.empty() || !encoding || IsDeclarable(document.declaredEncoding, *encoding);
}

/// What was found in a text.
struct Found {
    RecordStore records;
    bool isShallow;  ///< the records end at the levels that were asked for
};

/// The records of a text that the scanner accepts.
std::optional<Found> Scan(const std::string& text, std::optional<UTF_ENCODINGS> encoding, std::uint32_t levels)
{
    RecordBuilder records(SizeOf(text));
    const std::optional<ScannedDocument> document = ScanDocument(text, records, {.reportedLevels = levels});
    if (!document || !MayDeclare(*document, encoding)) {
        return std::nullopt;
    }
    return Found{records.Finish(), levels != kAllLevels};
}

/// The same for a text whose beginning, up to the content of the document element, the gate has read.
std::optional<Found> ScanAfter(const std::string& text, const RootTag& root, std::uint32_t levels)
{
    RecordBuilder records(SizeOf(text));
    const Tag tag{root.begin, root.end, TagKind::Start};
    records.Take({&tag, 1});
    if (!ScanAfterRootTag(text, root, records, {.reportedLevels = levels})) {
        return std::nullopt;
    }
    return Found{records.Finish(), levels != kAllLevels};
}

Found ReadByGate(const std::string& text, std::optional<UTF_ENCODINGS> encoding, std::uint32_t levels)
{
    ExpatGate gate(text, encoding);
    if (const std::optional<RootTag> root = gate.ReadDoctype()) {
        if (std::optional<Found> found = ScanAfter(text, *root, levels)) {
            return std::move(*found);
        }
    }
    return {gate.ReadRest(), false};
}

/// The gate reads valid UTF-8 only, and offsets that fit its index.
void MakeFitForGate(XmlText& text)
{
    if (text.IsChecked()) {
        return;
    }
    Position invalid;
    if (!Check(text, &invalid)) {
        throw InvalidTextException(zupm::result::NotValidInItsEncoding, invalid.line, invalid.column);
    }
    RequireParsableSize(text);  // bytes under a wrong declaration grow
}

}  // namespace

void RequireParsableSize(const XmlText& text)
{
    if (text.Utf8().size() > zupm::kLargestFile) {
        throw ParsingException(1, 1, "the document is too large");
    }
}

std::unique_ptr<SpanTree> BuildTree(XmlText text, std::uint32_t levels)
{
    std::optional<Found> found = Scan(text.Utf8(), text.Encoding(), levels);
    if (!found) {
        MakeFitForGate(text);
        found = ReadByGate(text.Utf8(), text.Encoding(), levels);
    }
    return std::make_unique<SpanTree>(std::move(text).TakeUtf8(), std::move(found->records), found->isShallow);
}

}  // namespace AdvXMLParser
