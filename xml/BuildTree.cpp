#include "xml/BuildTree.h"

#include <cstdint>
#include <utility>

#include "xml/Encoding.h"
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

/// The records of a text that the scanner accepts.
std::optional<RecordStore> Scan(const std::string& text, std::optional<UTF_ENCODINGS> encoding)
{
    RecordBuilder records(SizeOf(text));
    const std::optional<ScannedDocument> document = ScanDocument(text, records);
    return document && MayDeclare(*document, encoding) ? std::optional(records.Finish()) : std::nullopt;
}

/// The same for a text whose beginning, up to the content of the document element, the gate has read.
std::optional<RecordStore> ScanAfter(const std::string& text, const RootTag& root)
{
    RecordBuilder records(SizeOf(text));
    const Tag tag{root.begin, root.end, TagKind::Start};
    records.Take({&tag, 1});
    return ScanAfterRootTag(text, root, records) ? std::optional(records.Finish()) : std::nullopt;
}

RecordStore ReadByGate(const std::string& text, std::optional<UTF_ENCODINGS> encoding)
{
    ExpatGate gate(text, encoding);
    if (const std::optional<RootTag> root = gate.ReadDoctype()) {
        if (std::optional<RecordStore> records = ScanAfter(text, *root)) {
            return std::move(*records);
        }
    }
    return gate.ReadRest();
}

}  // namespace

std::unique_ptr<SpanTree> BuildTree(std::string text, std::optional<UTF_ENCODINGS> encoding)
{
    std::optional<RecordStore> records = Scan(text, encoding);
    if (!records) {
        records = ReadByGate(text, encoding);
    }
    return std::make_unique<SpanTree>(std::move(text), std::move(*records));
}

}  // namespace AdvXMLParser
