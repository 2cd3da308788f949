#include "xml/ExpatGate.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "xml/Encoding.h"
#include "xml/Exceptions.h"
#include "xml/ExpatWindow.h"
#include "xml/Opening.h"
#include "xml/Position.h"
#include "xml/RecordBuilder.h"
#include "xml/TagChecks.h"

namespace AdvXMLParser {

namespace {

/// Expat copies what follows an unfinished token; small pieces keep that copy in the processor's cache.
constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

/// Expat compares every declared attribute of an element with those declared before it.
constexpr int kMostDeclaredAttributes = 10'000;

/// Beyond this depth, refuse early when the rest of the text is too short for the missing end tags.
constexpr std::uint32_t kManyLevels = 100'000;
constexpr std::size_t kShortestEndTag = std::string_view("</a>").size();

}  // namespace

/// One run of Expat over one text, window after window.
///
/// A window ends after the first tag beyond WindowLimits::bytes, after the start tag of the document element when there
/// is a DOCTYPE (whose attribute defaults would cost work for every element), and after the end tag of the outermost
/// element that its parser knows of.
///
/// Errors    An exception must not pass through Expat: handlers keep it and stop the parser.
class ExpatGate::Reader {
public:
    Reader(std::string_view text, std::optional<UTF_ENCODINGS> encoding, const WindowLimits& limits)
        : m_text(text), m_records(static_cast<std::uint32_t>(text.size())), m_encoding(encoding), m_limits(limits)
    {
        OpenWindow(0);
    }

    [[nodiscard]] std::optional<RootTag> ReadDoctype();
    [[nodiscard]] RecordStore ReadRest();

private:
    static Reader& Of(void* user) noexcept { return *static_cast<Reader*>(user); }
    static void XMLCALL OnStart(void* user, const XML_Char* name, const XML_Char** attributes);
    static void XMLCALL OnEnd(void* user, const XML_Char* name);
    static void XMLCALL OnDeclaration(void* user, const XML_Char* version, const XML_Char* encoding, int standalone);
    static void XMLCALL OnDoctype(void* user, const XML_Char* name, const XML_Char* systemId, const XML_Char* publicId,
                                  int hasInternalSubset);
    static void XMLCALL OnDoctypeEnd(void* user);
    static void XMLCALL OnDoctypeToken(void* user, const XML_Char* text, int length);
    static void XMLCALL OnAttributeDeclaration(void* user, const XML_Char* element, const XML_Char* attribute,
                                               const XML_Char* type, const XML_Char* value, int isRequired);
    static void XMLCALL OnSkippedEntity(void* user, const XML_Char* name, int isParameter);

    void SetHandlers() noexcept;
    /// Feeds the parser until its window ends or the text does.
    void ReadWindow();
    /// Parses the next piece; false when the window ended in it.
    [[nodiscard]] bool Feed(std::string_view piece, bool isLast);
    /// Inside one huge token Expat starts over with every piece: doubling them keeps its cost linear.
    void ChoosePieceSize();
    void Refuse(std::string_view reason) noexcept;
    [[noreturn]] void ThrowFailure() const;
    [[noreturn]] void ThrowAt(std::uint32_t offset, std::string_view reason) const;

    [[nodiscard]] bool IsWindowFull() const noexcept { return m_read - m_window->Start() >= m_limits.bytes; }
    [[nodiscard]] std::string_view NameOf(const ElementRecord& element) const noexcept;

    /// Makes the next parser continue at `at`.
    void EndWindow(std::uint32_t at) noexcept;
    void OpenWindow(std::uint32_t at);
    /// Start tags of the innermost open elements; notes the outermost of them.
    [[nodiscard]] std::string OpenTags();

    std::string_view m_text;
    RecordBuilder m_records;
    std::optional<UTF_ENCODINGS> m_encoding;
    WindowLimits m_limits;
    std::optional<ExpatWindow> m_window;
    std::optional<std::uint32_t> m_nextWindow;  ///< where the next parser continues
    std::uint32_t m_outermost = 0;              ///< the outermost element that the parser knows of; 0 for none
    std::size_t m_fed = 0;                      ///< the parser has the text up to here
    bool m_isDone = false;                      ///< the text has ended
    std::size_t m_pieceBytes = kPieceBytes;
    std::uint32_t m_readBefore = 0;  ///< what had been read before the last piece
    Tag m_startTag{};                ///< the last one
    std::uint32_t m_levels = 0;      ///< open elements
    std::uint32_t m_read = 0;        ///< the end of the last tag
    bool m_hasDoctype = false;
    int m_declaredAttributes = 0;
    std::string_view m_refusal;     ///< why a handler stopped the parser
    std::uint32_t m_refusedAt = 0;  ///< and where
    std::exception_ptr m_exception;
};

void ExpatGate::Reader::OnStart(void* user, const XML_Char*, const XML_Char**)
try {
    Reader& gate = Of(user);
    const std::uint32_t start = gate.m_window->Offset();
    const std::uint32_t content = start + gate.m_window->Length();
    // After a DOCTYPE that might declare them elsewhere, Expat skips unknown entities in attribute values.
    if (gate.m_hasDoctype && !HasKnownReferencesOnly(gate.m_text.substr(start, content - start))) {
        gate.Refuse("undefined entity");
        return;
    }
    const bool isEmpty = gate.m_text[content - 2] == '/';
    gate.m_startTag = {start, content, isEmpty ? TagKind::Empty : TagKind::Start};
    gate.m_records.Take({&gate.m_startTag, 1});
    gate.m_read = content;
    ++gate.m_levels;
    if (gate.m_levels > kManyLevels && gate.m_levels * kShortestEndTag > gate.m_text.size() - content) {
        gate.Refuse("elements that are never closed");
    } else if (!isEmpty && (gate.IsWindowFull() || gate.m_hasDoctype)) {
        gate.EndWindow(content);
    }
} catch (...) {
    Of(user).m_exception = std::current_exception();
    Of(user).Refuse({});
}

void ExpatGate::Reader::OnEnd(void* user, const XML_Char*)
try {
    Reader& gate = Of(user);
    const std::uint32_t closed = gate.m_records.Innermost();
    const Tag tag{gate.m_window->Offset(), gate.m_window->Offset() + gate.m_window->Length(), TagKind::End};
    const bool isOfEmptyTag = tag.begin == tag.end;
    if (!isOfEmptyTag) {
        gate.m_records.Take({&tag, 1});
    }
    gate.m_read = tag.end;
    --gate.m_levels;
    // The parser that saw the document element end also reads what follows it.
    const bool isLastOfWindow = !isOfEmptyTag && closed == gate.m_outermost;
    if (gate.m_levels != 0 && (isLastOfWindow || gate.IsWindowFull())) {
        gate.EndWindow(gate.m_read);
    }
} catch (...) {
    Of(user).m_exception = std::current_exception();
    Of(user).Refuse({});
}

void ExpatGate::Reader::OnDeclaration(void* user, const XML_Char* version, const XML_Char* encoding, int)
{
    Reader& gate = Of(user);
    if (version != nullptr && std::string_view(version) != "1.0") {
        gate.Refuse("unsupported XML version");
    } else if (encoding != nullptr && gate.m_encoding && !IsDeclarable(encoding, *gate.m_encoding)) {
        gate.Refuse("the declared encoding is not supported or contradicts the bytes");
    }
}

void ExpatGate::Reader::OnDoctype(void* user, const XML_Char*, const XML_Char*, const XML_Char*, int)
{
    Reader& gate = Of(user);
    gate.m_hasDoctype = true;
    XML_SetDefaultHandler(gate.m_window->Parser(), OnDoctypeToken);
}

void ExpatGate::Reader::OnDoctypeEnd(void* user)
{
    XML_SetDefaultHandler(Of(user).m_window->Parser(), nullptr);
}

/// The tokens of the DOCTYPE. Expat's own handler for entity declarations does not report predefined entities that are
/// declared again, nor anything after an undeclared parameter entity.
void ExpatGate::Reader::OnDoctypeToken(void* user, const XML_Char* text, int length)
{
    const std::string_view token(text, static_cast<std::size_t>(length));
    if (token == "<!ENTITY") {
        Of(user).Refuse("entity declarations are not supported");
    } else if (token.size() > 2 && token.front() == '%') {
        Of(user).Refuse("parameter entities are not supported");
    }
}

void ExpatGate::Reader::OnAttributeDeclaration(void* user, const XML_Char*, const XML_Char*, const XML_Char*,
                                               const XML_Char*, int)
{
    if (++Of(user).m_declaredAttributes > kMostDeclaredAttributes) {
        Of(user).Refuse("too many attribute declarations");
    }
}

void ExpatGate::Reader::OnSkippedEntity(void* user, const XML_Char*, int)
{
    Of(user).Refuse("undefined entity");
}

void ExpatGate::Reader::Refuse(std::string_view reason) noexcept
{
    m_refusal = reason;
    m_refusedAt = m_window->Offset();
    XML_StopParser(m_window->Parser(), XML_FALSE);
}

void ExpatGate::Reader::EndWindow(std::uint32_t at) noexcept
{
    m_nextWindow = at;
    XML_StopParser(m_window->Parser(), XML_FALSE);
}

void ExpatGate::Reader::SetHandlers() noexcept
{
    XML_Parser parser = m_window->Parser();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, OnStart, OnEnd);
    XML_SetXmlDeclHandler(parser, OnDeclaration);
    XML_SetDoctypeDeclHandler(parser, OnDoctype, OnDoctypeEnd);
    XML_SetAttlistDeclHandler(parser, OnAttributeDeclaration);
    XML_SetSkippedEntityHandler(parser, OnSkippedEntity);
}

std::string_view ExpatGate::Reader::NameOf(const ElementRecord& element) const noexcept
{
    const std::string_view opening = m_text.substr(element.before, element.content - element.before);
    return NameIn(opening.substr(StartTagIn(opening)));
}

std::string ExpatGate::Reader::OpenTags()
{
    std::vector<std::string_view> names;
    std::size_t bytes = 0;
    m_outermost = m_records.Innermost();
    for (std::uint32_t element = m_outermost; element != 0; element = m_records.Records()[element].parent) {
        if (names.size() == m_limits.openTags || bytes > m_limits.openTagBytes) {
            break;
        }
        names.push_back(NameOf(m_records.Records()[element]));
        bytes += names.back().size();
        m_outermost = element;
    }
    std::string tags;
    std::for_each(names.rbegin(), names.rend(),
                  [&](std::string_view name) { tags.append("<").append(name).append(">"); });
    return tags;
}

void ExpatGate::Reader::OpenWindow(std::uint32_t at)
{
    m_window.reset();  // first, so that there are never two
    m_window.emplace(at, OpenTags());
    m_nextWindow.reset();
    m_hasDoctype = false;
    m_fed = at;
    SetHandlers();
}

bool ExpatGate::Reader::Feed(std::string_view piece, bool isLast)
{
    if (m_window->Feed(piece, isLast)) {
        return true;
    }
    if (!m_nextWindow || !m_refusal.empty() || m_exception) {
        ThrowFailure();
    }
    return false;
}

void ExpatGate::Reader::ThrowFailure() const
{
    if (m_exception) {
        std::rethrow_exception(m_exception);
    }
    const XML_Error error = XML_GetErrorCode(m_window->Parser());
    if (error == XML_ERROR_NO_MEMORY) {
        throw std::bad_alloc();
    }
    if (error == XML_ERROR_ABORTED) {
        ThrowAt(m_refusedAt, m_refusal);
    }
    ThrowAt(m_window->Offset(), XML_ErrorString(error));
}

void ExpatGate::Reader::ThrowAt(std::uint32_t offset, std::string_view reason) const
{
    const Position position = PositionOf(m_text, offset);
    throw ParsingException(position.line, position.column, std::string(reason));
}

void ExpatGate::Reader::ReadWindow()
{
    do {
        ChoosePieceSize();
        const std::string_view piece = m_text.substr(m_fed, m_pieceBytes);
        if (!Feed(piece, piece.empty())) {
            return;
        }
        m_fed += piece.size();
        m_isDone = piece.empty();
    } while (!m_isDone);
}

void ExpatGate::Reader::ChoosePieceSize()
{
    const std::uint32_t read = m_window->Offset();
    const bool isInsideToken = read == m_readBefore && m_fed != read;
    if (!isInsideToken) {
        m_pieceBytes = kPieceBytes;
    } else {
        if (m_pieceBytes == kPieceBytes && HasTooManyAttributes(m_text.substr(read))) {
            ThrowAt(read, "too many attributes");
        }
        m_pieceBytes *= 2;
    }
    m_readBefore = read;
}

std::optional<RootTag> ExpatGate::Reader::ReadDoctype()
{
    ReadWindow();
    return m_hasDoctype && !m_isDone ? std::optional(RootTag{m_startTag.begin, m_startTag.end}) : std::nullopt;
}

RecordStore ExpatGate::Reader::ReadRest()
{
    while (!m_isDone) {
        if (m_nextWindow) {
            OpenWindow(*m_nextWindow);
        }
        ReadWindow();
    }
    return m_records.Finish();
}

ExpatGate::ExpatGate(std::string_view text, std::optional<UTF_ENCODINGS> encoding, const WindowLimits& limits)
    : m_reader(std::make_unique<Reader>(text, encoding, limits))
{
}

ExpatGate::~ExpatGate() = default;

std::optional<RootTag> ExpatGate::ReadDoctype()
{
    return m_reader->ReadDoctype();
}

RecordStore ExpatGate::ReadRest()
{
    return m_reader->ReadRest();
}

}  // namespace AdvXMLParser
