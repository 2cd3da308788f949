#include "xml/scan/Scanner.h"

#include <array>

#include "xml/scan/Declaration.h"
#include "xml/scan/StartTags.h"
#include "xml/scan/Tokens.h"

namespace AdvXMLParser {

namespace {

/// Every level takes memory.
constexpr std::uint32_t kMostLevels = 100'000;

/// Collects tags for the sink.
class TagQueue {
public:
    explicit TagQueue(TagSink& sink) noexcept : m_sink(sink) {}

    void Add(const Tag& tag)
    {
        m_tags[m_count++] = tag;
        if (m_count == m_tags.size()) {
            Flush();
        }
    }
    void Flush()
    {
        m_sink.Take(std::span<const Tag>(m_tags.data(), m_count));
        m_count = 0;
    }

private:
    TagSink& m_sink;
    std::array<Tag, 512> m_tags{};
    std::size_t m_count = 0;
};

/// Stage two, the upper half: elements, and what is around and between them.
class Scanner {
public:
    Scanner(const std::string& text, std::uint32_t begin, TagSink& sink, const ScanOptions& options)
        : m_tokens(text, begin, *options.finder, options.pieceBytes),
          m_tags(m_tokens),
          m_queue(sink),
          m_reportedLevels(options.reportedLevels),
          m_at(begin)
    {
    }

    [[nodiscard]] std::optional<ScannedDocument> Document();
    [[nodiscard]] bool RestOfDocument(const RootTag& root);

private:
    [[nodiscard]] bool Comments();
    [[nodiscard]] bool RootElement();
    [[nodiscard]] bool Content();
    [[nodiscard]] bool Markup(std::uint32_t mark);
    [[nodiscard]] bool StartTag(std::uint32_t tag);
    [[nodiscard]] bool EndTag(std::uint32_t tag);
    [[nodiscard]] bool EndOfText();
    [[nodiscard]] bool IsCdataClose(std::uint32_t mark) const noexcept;
    void Report(const Tag& tag, std::uint32_t level);

    Tokens m_tokens;
    StartTags m_tags;
    TagQueue m_queue;
    std::uint32_t m_reportedLevels;
    std::uint32_t m_at;         ///< outside the document element: what was read ends here
    std::uint32_t m_level = 0;  ///< open elements
};

std::optional<ScannedDocument> Scanner::Document()
{
    ScannedDocument document;
    if (HasDeclaration(m_tokens.Text())) {
        const std::optional<Declaration> declaration = ReadDeclaration(m_tokens.Text());
        if (!declaration) {
            return std::nullopt;
        }
        document.declaredEncoding = declaration->encoding;
        m_at = declaration->length;
        m_tokens.Marks().SkipTo(m_at);
    }
    const bool isAccepted = Comments() && RootElement() && Comments() && EndOfText();
    return isAccepted ? std::optional(document) : std::nullopt;
}

bool Scanner::RestOfDocument(const RootTag& root)
{
    m_level = 1;
    m_tags.Remember(root.begin, m_level);
    return Content() && Comments() && EndOfText();
}

/// Comments, processing instructions and white space: all that may be outside the document element. Anything else ends
/// them: a start tag, the end of the text, or what is not accepted.
bool Scanner::Comments()
{
    while (true) {
        m_at = m_tokens.SkipBlanks(m_at);
        if (m_tokens[m_at] != '<' || (m_tokens[m_at + 1] != '!' && m_tokens[m_at + 1] != '?')) {
            return true;
        }
        m_at = m_tokens[m_at + 1] == '!' ? m_tokens.CommentEnd(m_at) : m_tokens.InstructionEnd(m_at);
        if (m_at == kNotAccepted) {
            return false;
        }
    }
}

bool Scanner::RootElement()
{
    return m_tokens[m_at] == '<' && m_tokens.Marks().Peek() == m_at && StartTag(m_at) && Content();
}

/// What follows a start tag, until the document element is closed.
bool Scanner::Content()
{
    while (m_level > 0) {
        const std::uint32_t mark = m_tokens.Marks().Peek();
        switch (m_tokens[mark]) {
            case '<':
                if (!Markup(mark)) {
                    return false;
                }
                break;
            case '&':
                if (!IsReferenceAt(m_tokens.At(mark))) {
                    return false;
                }
                m_tokens.Marks().Take(1);
                break;
            case '>':
                if (IsCdataClose(mark)) {
                    return false;
                }
                m_tokens.Marks().Take(1);
                break;
            case '"':
            case '\'':
                m_tokens.Marks().Take(1);
                break;
            default:  // the end of the text
                return false;
        }
    }
    return true;
}

/// Text must not hold "]]>".
bool Scanner::IsCdataClose(std::uint32_t mark) const noexcept
{
    return m_tokens[mark - 1] == ']' && m_tokens[mark - 2] == ']';
}

bool Scanner::Markup(std::uint32_t mark)
{
    switch (m_tokens[mark + 1]) {
        case '/':
            return EndTag(mark);
        case '?':
            return m_tokens.InstructionEnd(mark) != kNotAccepted;
        case '!':
            return m_tokens[mark + 2] == '[' ? m_tokens.CdataEnd(mark) != kNotAccepted
                                             : m_tokens.CommentEnd(mark) != kNotAccepted;
        default:
            return StartTag(mark);
    }
}

bool Scanner::StartTag(std::uint32_t tag)
{
    if (m_level == kMostLevels) {
        return false;
    }
    const std::uint32_t level = m_level + 1;
    const std::uint32_t end = m_tags.End(tag, level);
    if (end == kNotAccepted) {
        return false;
    }
    // A '/' before the closing '>' cannot be part of anything else: attribute values are quoted.
    const bool isEmpty = m_tokens[end - 2] == '/';
    Report({tag, end, isEmpty ? TagKind::Empty : TagKind::Start}, level);
    m_level += isEmpty ? 0 : 1;
    m_at = end;
    return true;
}

bool Scanner::EndTag(std::uint32_t tag)
{
    const std::uint32_t end = m_tags.EndOfEndTag(tag, m_level);
    if (end == kNotAccepted) {
        return false;
    }
    Report({tag, end, TagKind::End}, m_level);
    --m_level;
    m_at = end;
    return true;
}

void Scanner::Report(const Tag& tag, std::uint32_t level)
{
    if (level <= m_reportedLevels) {
        m_queue.Add(tag);
    }
}

/// Stage one has looked at every token, because their marks were taken. Only white space follows the last one.
bool Scanner::EndOfText()
{
    m_queue.Flush();
    return m_at == m_tokens.Text().size() && m_tokens.Marks().IsValid();
}

}  // namespace

std::optional<ScannedDocument> ScanDocument(const std::string& text, TagSink& sink, const ScanOptions& options)
{
    return Scanner(text, 0, sink, options).Document();
}

bool ScanAfterRootTag(const std::string& text, const RootTag& root, TagSink& sink, const ScanOptions& options)
{
    return Scanner(text, root.end, sink, options).RestOfDocument(root);
}

}  // namespace AdvXMLParser
