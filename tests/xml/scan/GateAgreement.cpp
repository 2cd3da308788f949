#include "tests/xml/scan/GateAgreement.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "xml/Exceptions.h"
#include "xml/ExpatGate.h"
#include "xml/RecordBuilder.h"
#include "xml/SpanTree.h"
#include "xml/scan/Scanner.h"

namespace AdvXMLParser {

namespace {

constexpr std::uint32_t kPieces[] = {1, 64, 100, 4096, 16384};

std::unique_ptr<SpanTree> TreeOf(const std::string& text)
{
    try {
        return std::make_unique<SpanTree>(text, ExpatGate(text, std::nullopt).ReadRest());
    } catch (const ParsingException&) {
        return nullptr;
    }
}

/// Keeps the tags for comparison and passes them on.
class Collector final : public TagSink {
public:
    explicit Collector(const std::string& text) : m_builder(static_cast<std::uint32_t>(text.size())) {}

    void Take(std::span<const Tag> taken) override
    {
        tags.insert(tags.end(), taken.begin(), taken.end());
        m_builder.Take(taken);
    }
    [[nodiscard]] RecordStore Records() { return m_builder.Finish(); }

    std::vector<Tag> tags;

private:
    RecordBuilder m_builder;
};

bool IsSameTag(const Tag& left, const Tag& right)
{
    return left.begin == right.begin && left.end == right.end && left.kind == right.kind;
}

bool AreSame(const std::vector<Tag>& left, const std::vector<Tag>& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), IsSameTag);
}

bool IsSpan(const SpanTree& tree, std::string_view view, std::uint32_t begin, std::uint32_t end)
{
    return view.data() == tree.ParsedText().data() + begin && view.size() == end - begin;
}

/// Whether a record is the gate's. StartTag is what is left of its span after Before.
bool IsRecordOf(const SpanTree& tree, RecordStore& records, std::uint32_t element)
{
    const ElementRecord& record = records[element];
    const std::string_view before = tree.Before(element);
    const std::string_view tag = tree.StartTag(element);
    const std::uint32_t lastChild = record.firstChild == 0 ? 0 : records[record.firstChild].previous;
    return before.data() + before.size() == tag.data() &&
           IsSpan(tree, {before.data(), before.size() + tag.size()}, record.before, record.content) &&
           IsSpan(tree, tree.Tail(element), record.tail, record.end) && tree.Parent(element) == record.parent &&
           tree.FirstChild(element) == record.firstChild && tree.NextSibling(element) == record.next &&
           tree.LastChild(element) == lastChild;
}

/// Both number elements in document order.
std::string DifferenceOfRecords(const SpanTree& tree, Collector& scanned)
{
    RecordStore records = scanned.Records();
    const auto elements = static_cast<std::uint32_t>(std::count_if(
        scanned.tags.begin(), scanned.tags.end(), [](const Tag& tag) { return tag.kind != TagKind::End; }));
    for (std::uint32_t element = 0; element <= elements; ++element) {
        if (!IsRecordOf(tree, records, element)) {
            return "record " + std::to_string(element) + " is not the gate's";
        }
    }
    return {};
}

/// The tags on levels up to `levels`.
std::vector<Tag> UpToLevel(const std::vector<Tag>& tags, std::uint32_t levels)
{
    std::vector<Tag> kept;
    std::uint32_t open = 0;
    for (const Tag& tag : tags) {
        const std::uint32_t level = tag.kind == TagKind::End ? open-- : open + 1;
        open += tag.kind == TagKind::Start ? 1 : 0;
        if (level <= levels) {
            kept.push_back(tag);
        }
    }
    return kept;
}

std::string DifferenceAtDepth(const std::string& text, const std::vector<Tag>& tags)
{
    for (const std::uint32_t levels : {0u, 1u, 2u, 5u}) {
        Collector some(text);
        if (!ScanDocument(text, some, {.reportedLevels = levels}) || !AreSame(some.tags, UpToLevel(tags, levels))) {
            return "not the tags of " + std::to_string(levels) + " levels";
        }
    }
    return {};
}

/// Every form in every piece size against the plain one in one piece.
std::string DifferenceOfForms(const std::string& text, bool isAccepted, const std::vector<Tag>& tags)
{
    for (const MarkFinder& finder : MarkFindersFor(ThisProcessor())) {
        for (const std::uint32_t pieceBytes : kPieces) {
            Collector again(text);
            const bool isAcceptedAgain =
                ScanDocument(text, again, {.finder = &finder, .pieceBytes = pieceBytes}).has_value();
            if (isAcceptedAgain != isAccepted || (isAccepted && !AreSame(again.tags, tags))) {
                return std::string(finder.name) + " in pieces of " + std::to_string(pieceBytes) + " bytes";
            }
        }
    }
    return {};
}

/// What the gate accepts is accepted from the root's start tag on, too, whatever is in front of it.
std::string DifferenceAfterRootTag(const std::string& text, const SpanTree& tree)
{
    const std::uint32_t root = tree.FirstChild(SpanTree::kDocument);
    if (tree.IsEmptyTag(root)) {
        return {};
    }
    const std::string_view tag = tree.StartTag(root);
    const auto begin = static_cast<std::uint32_t>(tag.data() - tree.ParsedText().data());
    const auto end = static_cast<std::uint32_t>(begin + tag.size());
    Collector rest(text);
    const Tag rootTag{begin, end, TagKind::Start};
    rest.Take({&rootTag, 1});
    if (!ScanAfterRootTag(text, {begin, end}, rest)) {
        return "not accepted after the root's start tag";
    }
    return DifferenceOfRecords(tree, rest);
}

}  // namespace

Agreement CompareWithGate(const std::string& text)
{
    const std::unique_ptr<SpanTree> tree = TreeOf(text);
    Collector scanned(text);
    Agreement agreement;
    agreement.isAcceptedByGate = tree != nullptr;
    agreement.isAcceptedByScanner = ScanDocument(text, scanned).has_value();
    agreement.difference = DifferenceOfForms(text, agreement.isAcceptedByScanner, scanned.tags);
    if (agreement.isAcceptedByScanner && agreement.difference.empty()) {
        agreement.difference = DifferenceAtDepth(text, scanned.tags);
    }
    if (agreement.isAcceptedByScanner && agreement.difference.empty()) {
        agreement.difference =
            tree == nullptr ? "the gate refuses what the scanner accepts" : DifferenceOfRecords(*tree, scanned);
    }
    if (agreement.isAcceptedByGate && agreement.difference.empty()) {
        agreement.difference = DifferenceAfterRootTag(text, *tree);
    }
    agreement.isPassedOnNeedlessly =
        agreement.isAcceptedByGate && !agreement.isAcceptedByScanner && text.find("<!DOCTYPE") == std::string::npos;
    return agreement;
}

}  // namespace AdvXMLParser
