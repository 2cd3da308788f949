#include "xml/SpanTree.h"

#include <algorithm>
#include <utility>

#include "xml/Opening.h"
#include "xml/TextRuns.h"
#include "xml/Walk.h"

namespace AdvXMLParser {

namespace {

/// A smaller edit buffer is not worth a search for dead edits.
constexpr std::size_t kSmallestEditBuffer = std::size_t{64} << 10;

/// Joins adjacent spans.
class RunCollector {
public:
    void Add(std::string_view span)
    {
        if (span.empty()) {
            return;
        }
        if (!m_runs.empty() && m_runs.back().data() + m_runs.back().size() == span.data()) {
            m_runs.back() = {m_runs.back().data(), m_runs.back().size() + span.size()};
        } else {
            m_runs.push_back(span);
        }
    }
    [[nodiscard]] std::vector<std::string_view> Take() && noexcept { return std::move(m_runs); }

private:
    std::vector<std::string_view> m_runs;
};

}  // namespace

SpanTree::SpanTree(std::string text, RecordStore records, bool isShallow) noexcept
    : m_original(std::move(text)),
      m_dropEditsAt(kSmallestEditBuffer),
      m_records(std::move(records)),
      m_isShallow(isShallow)
{
}

std::uint32_t SpanTree::LastChild(std::uint32_t element) const noexcept
{
    const std::uint32_t first = m_records[element].firstChild;
    return first == kNone ? kNone : m_records[first].previous;
}

std::string_view SpanTree::Text(std::uint32_t from, std::uint32_t to) const noexcept
{
    const std::uint32_t base = EditBase();
    return from < base ? std::string_view(m_original).substr(from, to - from)
                       : std::string_view(m_edits).substr(from - base, to - from);
}

std::string_view SpanTree::Opening(std::uint32_t element) const noexcept
{
    const ElementRecord& record = m_records[element];
    return Text(record.before, record.content);
}

std::string_view SpanTree::Before(std::uint32_t element) const noexcept
{
    const std::string_view opening = Opening(element);
    return opening.substr(0, StartTagIn(opening));
}

std::string_view SpanTree::StartTag(std::uint32_t element) const noexcept
{
    const std::string_view opening = Opening(element);
    return opening.substr(StartTagIn(opening));
}

std::string_view SpanTree::Name(std::uint32_t element) const noexcept
{
    return NameIn(StartTag(element));
}

std::string_view SpanTree::Tail(std::uint32_t element) const noexcept
{
    const ElementRecord& record = m_records[element];
    return Text(record.tail, record.end);
}

bool SpanTree::IsEmptyTag(std::uint32_t element) const noexcept
{
    // Attribute values are quoted, so a '/' before the closing '>' can mean nothing else.
    const std::string_view tag = StartTag(element);
    return tag.size() > 2 && tag[tag.size() - 2] == '/';
}

std::uint32_t SpanTree::CloseOffset(std::uint32_t element) const noexcept
{
    const std::uint32_t end = m_records[element].end;
    if (element == kDocument || IsEmptyTag(element)) {
        return end;
    }
    const std::uint32_t base = EditBase();
    const std::string& buffer = end < base ? m_original : m_edits;
    const std::uint32_t shift = end < base ? 0 : base;
    return static_cast<std::uint32_t>(buffer.find('>', end - shift)) + 1 + shift;
}

std::string_view SpanTree::EndTag(std::uint32_t element) const noexcept
{
    return Text(m_records[element].end, CloseOffset(element));
}

std::vector<bool> SpanTree::EditedPaths() const
{
    std::vector<bool> isEdited(1);
    for (std::uint32_t element : m_edited) {
        isEdited.resize(std::max<std::size_t>(isEdited.size(), std::size_t{element} + 1));
        for (; !isEdited[element]; element = Parent(element)) {
            isEdited[element] = true;
            isEdited.resize(std::max<std::size_t>(isEdited.size(), std::size_t{Parent(element)} + 1));
        }
    }
    return isEdited;
}

std::vector<std::string_view> SpanTree::Runs() const
{
    const std::vector<bool> edited = EditedPaths();
    // What is new lies in the edit buffer, and not always in the order of the document.
    const auto isOneRun = [&](std::uint32_t element) {
        const bool isOnPath = m_isEditedAnywhere || (element < edited.size() && edited[element]);
        return !isOnPath && m_records[element].before < EditBase();
    };
    RunCollector runs;
    const auto addClosing = [&](std::uint32_t element) {
        runs.Add(Text(m_records[element].tail, CloseOffset(element)));
    };
    for (std::uint32_t element = kDocument;;) {
        if (isOneRun(element)) {
            runs.Add(Text(m_records[element].before, CloseOffset(element)));
        } else {
            runs.Add(Opening(element));
            if (const std::uint32_t child = FirstChild(element); child != kNone) {
                element = child;
                continue;
            }
            addClosing(element);
        }
        while (element != kDocument && NextSibling(element) == kNone) {
            element = Parent(element);
            addClosing(element);
        }
        if (element == kDocument) {
            return std::move(runs).Take();
        }
        element = NextSibling(element);
    }
}

std::string SpanTree::Serialize() const
{
    return Joined(Runs());
}

void SpanTree::Link(std::uint32_t parent, std::uint32_t child) noexcept
{
    ElementRecord& record = m_records[child];
    ElementRecord& owner = m_records[parent];
    record.parent = parent;
    record.next = kNone;
    if (owner.firstChild == kNone) {
        owner.firstChild = child;
        record.previous = child;
        return;
    }
    ElementRecord& first = m_records[owner.firstChild];
    record.previous = first.previous;
    m_records[first.previous].next = child;
    first.previous = child;
}

void SpanTree::Unlink(std::uint32_t child) noexcept
{
    const ElementRecord& record = m_records[child];
    ElementRecord& owner = m_records[record.parent];
    if (owner.firstChild == child) {
        owner.firstChild = record.next;
    } else {
        m_records[record.previous].next = record.next;
    }
    if (record.next != kNone) {
        m_records[record.next].previous = record.previous;
    } else if (owner.firstChild != kNone) {
        m_records[owner.firstChild].previous = record.previous;
    }
}

void SpanTree::FreeChildren(std::uint32_t element) noexcept
{
    std::uint32_t victim = std::exchange(m_records[element].firstChild, kNone);
    while (victim != kNone) {
        // Children first. The way down empties each child list, so the way up does not enter it again.
        if (const std::uint32_t child = std::exchange(m_records[victim].firstChild, kNone); child != kNone) {
            victim = child;
            continue;
        }
        const std::uint32_t next = m_records[victim].next;
        const std::uint32_t parent = m_records[victim].parent;
        m_records.Free(victim);
        victim = next != kNone ? next : (parent == element ? kNone : parent);
    }
}

template <class Visit>
void SpanTree::ForEach(Visit visit) const
{
    WalkSubtree(*this, kDocument, visit, [](std::uint32_t) {});
}

std::size_t SpanTree::LiveEditSize() const noexcept
{
    std::size_t live = 0;
    ForEach([&](std::uint32_t element) {
        const ElementRecord& record = m_records[element];
        live += record.before >= EditBase() ? record.content - record.before : 0;
        live += record.tail >= EditBase() ? CloseOffset(element) - record.tail : 0;
    });
    return live;
}

void SpanTree::DropDeadEdits() noexcept
try {
    if (m_edits.size() < m_dropEditsAt) {
        return;
    }
    const std::uint32_t base = EditBase();
    std::string live;
    live.reserve(LiveEditSize());  // only this can fail, and nothing has moved yet
    const auto move = [&](std::uint32_t from, std::uint32_t to) {
        const auto moved = static_cast<std::uint32_t>(base + live.size());
        live.append(Text(from, to));
        return moved - from;
    };
    ForEach([&](std::uint32_t element) {
        ElementRecord& record = m_records[element];
        const std::uint32_t close = CloseOffset(element);
        if (record.before >= base) {
            const std::uint32_t shift = move(record.before, record.content);
            record.before += shift;
            record.content += shift;
        }
        if (record.tail >= base) {
            const std::uint32_t shift = move(record.tail, close);
            record.tail += shift;
            record.end += shift;
        }
    });
    m_edits = std::move(live);
    // A new visit to every element pays when as much has been edited as is worth keeping.
    m_dropEditsAt = std::max({kSmallestEditBuffer, 2 * m_edits.size(), m_original.size() / 4});
} catch (const std::bad_alloc&) {
    m_dropEditsAt = m_edits.size() * 2;
}

}  // namespace AdvXMLParser
