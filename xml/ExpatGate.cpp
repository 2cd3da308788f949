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
#include "xml/Position.h"
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

/// One run of Expat over one text, window after window.
///
/// A window ends after the first tag beyond WindowLimits::bytes, after the start tag of the document element when there
/// is a DOCTYPE (whose attribute defaults would cost work for every element), and after the end tag of the outermost
/// element that its parser knows of.
///
/// Errors    An exception must not pass through Expat: handlers keep it and stop the parser.
class Gate {
public:
    Gate(std::string text, std::optional<UTF_ENCODINGS> encoding, const WindowLimits& limits)
        : m_tree(std::make_unique<SpanTree>(std::move(text))),
          m_text(m_tree->ParsedText()),
          m_encoding(encoding),
          m_limits(limits)
    {
    }

    std::unique_ptr<SpanTree> Run();

private:
    static Gate& Of(void* user) noexcept { return *static_cast<Gate*>(user); }
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
    /// Parses the next piece; false when the window ended in it.
    [[nodiscard]] bool Feed(std::string_view piece, bool isLast);
    /// Inside one huge token Expat starts over with every piece: doubling them keeps its cost linear.
    [[nodiscard]] std::size_t LongerPiece(std::size_t pieceBytes, std::uint32_t token) const;
    void Refuse(std::string_view reason) noexcept;
    [[noreturn]] void ThrowFailure() const;
    [[noreturn]] void ThrowAt(std::uint32_t offset, std::string_view reason) const;

    [[nodiscard]] bool IsWindowFull() const noexcept { return m_read - m_window->Start() >= m_limits.bytes; }

    /// Makes the next parser continue at `at`.
    void EndWindow(std::uint32_t at) noexcept;
    void OpenWindow(std::uint32_t at);
    /// Start tags of the innermost open elements; notes the outermost of them.
    [[nodiscard]] std::string OpenTags();

    std::unique_ptr<SpanTree> m_tree;
    std::string_view m_text;
    std::optional<UTF_ENCODINGS> m_encoding;
    WindowLimits m_limits;
    std::optional<ExpatWindow> m_window;
    std::optional<std::uint32_t> m_nextWindow;        ///< where the next parser continues
    std::uint32_t m_outermost = SpanTree::kDocument;  ///< the outermost element that the parser knows of
    std::uint32_t m_open = SpanTree::kDocument;       ///< the innermost open element
    std::uint32_t m_levels = 0;                       ///< open elements
    std::uint32_t m_read = 0;                         ///< the end of the last tag
    bool m_hasDoctype = false;
    int m_declaredAttributes = 0;
    std::string_view m_refusal;     ///< why a handler stopped the parser
    std::uint32_t m_refusedAt = 0;  ///< and where
    std::exception_ptr m_exception;
};

void Gate::OnStart(void* user, const XML_Char*, const XML_Char**)
try {
    Gate& gate = Of(user);
    const std::uint32_t start = gate.m_window->Offset();
    const std::uint32_t content = start + gate.m_window->Length();
    // After a DOCTYPE that might declare them elsewhere, Expat skips unknown entities in attribute values.
    if (gate.m_hasDoctype && !HasKnownReferencesOnly(gate.m_text.substr(start, content - start))) {
        gate.Refuse("undefined entity");
        return;
    }
    gate.m_open = gate.m_tree->OpenParsed(gate.m_open, gate.m_read, content);
    gate.m_read = content;
    ++gate.m_levels;
    if (gate.m_levels > kManyLevels && gate.m_levels * kShortestEndTag > gate.m_text.size() - content) {
        gate.Refuse("elements that are never closed");
    } else if (!gate.m_tree->IsEmptyTag(gate.m_open) && (gate.IsWindowFull() || gate.m_hasDoctype)) {
        gate.EndWindow(content);
    }
} catch (...) {
    Of(user).m_exception = std::current_exception();
    Of(user).Refuse({});
}

void Gate::OnEnd(void* user, const XML_Char*)
{
    Gate& gate = Of(user);
    const std::uint32_t end = gate.m_window->Offset();
    const std::uint32_t closed = gate.m_open;
    gate.m_tree->CloseParsed(closed, gate.m_read, end);
    gate.m_read = end + gate.m_window->Length();
    gate.m_open = gate.m_tree->Parent(closed);
    --gate.m_levels;
    // The parser that saw the document element end also reads what follows it.
    if (gate.m_open != SpanTree::kDocument && (closed == gate.m_outermost || gate.IsWindowFull())) {
        gate.EndWindow(gate.m_read);
    }
}

void Gate::OnDeclaration(void* user, const XML_Char* version, const XML_Char* encoding, int)
{
    Gate& gate = Of(user);
    if (version != nullptr && std::string_view(version) != "1.0") {
        gate.Refuse("unsupported XML version");
    } else if (encoding != nullptr && gate.m_encoding && !IsDeclarable(encoding, *gate.m_encoding)) {
        gate.Refuse("the declared encoding is not supported or contradicts the bytes");
    }
}

void Gate::OnDoctype(void* user, const XML_Char*, const XML_Char*, const XML_Char*, int)
{
    Gate& gate = Of(user);
    gate.m_hasDoctype = true;
    XML_SetDefaultHandler(gate.m_window->Parser(), OnDoctypeToken);
}

void Gate::OnDoctypeEnd(void* user)
{
    XML_SetDefaultHandler(Of(user).m_window->Parser(), nullptr);
}

/// The tokens of the DOCTYPE. Expat's own handler for entity declarations does not report predefined entities that are
/// declared again, nor anything after an undeclared parameter entity.
void Gate::OnDoctypeToken(void* user, const XML_Char* text, int length)
{
    const std::string_view token(text, static_cast<std::size_t>(length));
    if (token == "<!ENTITY") {
        Of(user).Refuse("entity declarations are not supported");
    } else if (token.size() > 2 && token.front() == '%') {
        Of(user).Refuse("parameter entities are not supported");
    }
}

void Gate::OnAttributeDeclaration(void* user, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*, int)
{
    if (++Of(user).m_declaredAttributes > kMostDeclaredAttributes) {
        Of(user).Refuse("too many attribute declarations");
    }
}

void Gate::OnSkippedEntity(void* user, const XML_Char*, int)
{
    Of(user).Refuse("undefined entity");
}

void Gate::Refuse(std::string_view reason) noexcept
{
    m_refusal = reason;
    m_refusedAt = m_window->Offset();
    XML_StopParser(m_window->Parser(), XML_FALSE);
}

void Gate::EndWindow(std::uint32_t at) noexcept
{
    m_nextWindow = at;
    XML_StopParser(m_window->Parser(), XML_FALSE);
}

void Gate::SetHandlers() noexcept
{
    XML_Parser parser = m_window->Parser();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, OnStart, OnEnd);
    XML_SetXmlDeclHandler(parser, OnDeclaration);
    XML_SetDoctypeDeclHandler(parser, OnDoctype, OnDoctypeEnd);
    XML_SetAttlistDeclHandler(parser, OnAttributeDeclaration);
    XML_SetSkippedEntityHandler(parser, OnSkippedEntity);
}

std::string Gate::OpenTags()
{
    std::vector<std::string_view> names;
    std::size_t bytes = 0;
    m_outermost = m_open;
    for (std::uint32_t element = m_open; element != SpanTree::kDocument; element = m_tree->Parent(element)) {
        if (names.size() == m_limits.openTags || bytes > m_limits.openTagBytes) {
            break;
        }
        names.push_back(m_tree->Name(element));
        bytes += names.back().size();
        m_outermost = element;
    }
    std::string tags;
    std::for_each(names.rbegin(), names.rend(),
                  [&](std::string_view name) { tags.append("<").append(name).append(">"); });
    return tags;
}

void Gate::OpenWindow(std::uint32_t at)
{
    m_window.reset();  // first, so that there are never two
    m_window.emplace(at, OpenTags());
    m_nextWindow.reset();
    m_hasDoctype = false;
    SetHandlers();
}

bool Gate::Feed(std::string_view piece, bool isLast)
{
    if (m_window->Feed(piece, isLast)) {
        return true;
    }
    if (!m_nextWindow || !m_refusal.empty() || m_exception) {
        ThrowFailure();
    }
    return false;
}

void Gate::ThrowFailure() const
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

void Gate::ThrowAt(std::uint32_t offset, std::string_view reason) const
{
    const Position position = PositionOf(m_text, offset);
    throw ParsingException(position.line, position.column, std::string(reason));
}

std::unique_ptr<SpanTree> Gate::Run()
{
    OpenWindow(0);
    std::size_t pieceBytes = kPieceBytes;
    std::uint32_t readBefore = 0;
    for (std::size_t at = 0;;) {
        const std::string_view piece = m_text.substr(at, pieceBytes);
        if (!Feed(piece, piece.empty())) {
            at = *m_nextWindow;
            OpenWindow(*m_nextWindow);
        } else if (piece.empty()) {
            break;
        } else {
            at += piece.size();
        }
        const std::uint32_t read = m_window->Offset();
        pieceBytes = read == readBefore ? LongerPiece(pieceBytes, read) : kPieceBytes;
        readBefore = read;
    }
    m_tree->CloseParsed(SpanTree::kDocument, m_read, static_cast<std::uint32_t>(m_text.size()));
    return std::move(m_tree);
}

std::size_t Gate::LongerPiece(std::size_t pieceBytes, std::uint32_t token) const
{
    if (pieceBytes == kPieceBytes && HasTooManyAttributes(m_text.substr(token))) {
        ThrowAt(token, "too many attributes");
    }
    return 2 * pieceBytes;
}

}  // namespace

std::unique_ptr<SpanTree> BuildTree(std::string text, std::optional<UTF_ENCODINGS> encoding, const WindowLimits& limits)
{
    return Gate(std::move(text), encoding, limits).Run();
}

}  // namespace AdvXMLParser
