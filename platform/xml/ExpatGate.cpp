#include "platform/xml/ExpatGate.h"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <new>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/xml/Encoding.h"
#include "platform/xml/Exceptions.h"
#include "platform/xml/Position.h"

namespace AdvXMLParser {

namespace {

/// Fed first, so that Expat takes the text for the UTF-8 that it is, whatever its first characters look like.
constexpr std::string_view kSignature = "\xEF\xBB\xBF";

/// Expat copies what it is fed behind an unfinished token; small pieces keep that copy in the processor's cache.
constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

constexpr std::string_view kPredefined[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};

/// Whether every reference in a start tag is a character reference or one of the predefined five.
bool HasKnownReferencesOnly(std::string_view tag) noexcept
{
    for (std::size_t at = tag.find('&'); at != std::string_view::npos; at = tag.find('&', at + 1)) {
        const std::string_view rest = tag.substr(at);
        const bool isKnown =
            rest.starts_with("&#") || std::any_of(std::begin(kPredefined), std::end(kPredefined),
                                                  [&](auto entity) { return rest.starts_with(entity); });
        if (!isKnown) {
            return false;
        }
    }
    return true;
}

struct ParserDeleter {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};
using ParserOwner = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

/// One run of Expat over one text.
///
/// Errors    An exception must not pass through Expat: handlers keep it and stop the parser.
class Gate {
public:
    Gate(std::string text, std::optional<UTF_ENCODINGS> encoding)
        : m_tree(std::make_unique<SpanTree>(std::move(text))), m_text(m_tree->ParsedText()), m_encoding(encoding)
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
    static void XMLCALL OnSkippedEntity(void* user, const XML_Char* name, int isParameter);

    void SetHandlers() noexcept;
    void Feed(std::string_view piece, bool isLast);
    void Refuse(std::string_view reason) noexcept;
    [[noreturn]] void ThrowFailure() const;

    [[nodiscard]] std::uint32_t Offset() const noexcept
    {
        const auto index = static_cast<std::int64_t>(XML_GetCurrentByteIndex(m_parser.get()));
        const auto signature = static_cast<std::int64_t>(kSignature.size());
        return index < signature ? 0 : static_cast<std::uint32_t>(index - signature);
    }
    [[nodiscard]] std::uint32_t Length() const noexcept
    {
        return static_cast<std::uint32_t>(XML_GetCurrentByteCount(m_parser.get()));
    }

    std::unique_ptr<SpanTree> m_tree;
    std::string_view m_text;
    std::optional<UTF_ENCODINGS> m_encoding;
    ParserOwner m_parser;
    std::uint32_t m_open = SpanTree::kDocument;  ///< the innermost open element
    std::uint32_t m_read = 0;                    ///< behind the last tag
    bool m_hasDoctype = false;
    std::string_view m_refusal;     ///< why a handler stopped the parser
    std::uint32_t m_refusedAt = 0;  ///< and where
    std::exception_ptr m_exception;
};

void Gate::OnStart(void* user, const XML_Char*, const XML_Char**)
try {
    Gate& gate = Of(user);
    const std::uint32_t start = gate.Offset();
    const std::uint32_t content = start + gate.Length();
    // Expat passes over unknown entities in attribute values once there is a DOCTYPE that might declare them elsewhere.
    if (gate.m_hasDoctype && !HasKnownReferencesOnly(gate.m_text.substr(start, content - start))) {
        gate.Refuse("undefined entity");
        return;
    }
    gate.m_open = gate.m_tree->OpenParsed(gate.m_open, gate.m_read, start, content);
    gate.m_read = content;
} catch (...) {
    Of(user).m_exception = std::current_exception();
    Of(user).Refuse({});
}

void Gate::OnEnd(void* user, const XML_Char*)
{
    Gate& gate = Of(user);
    const std::uint32_t end = gate.Offset();
    gate.m_tree->CloseParsed(gate.m_open, gate.m_read, end);
    gate.m_read = end + gate.Length();
    gate.m_open = gate.m_tree->Parent(gate.m_open);
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
    XML_SetDefaultHandler(gate.m_parser.get(), OnDoctypeToken);
}

void Gate::OnDoctypeEnd(void* user)
{
    XML_SetDefaultHandler(Of(user).m_parser.get(), nullptr);
}

/// The tokens of the DOCTYPE: Expat's own handler for entity declarations is not told of all of them (not of predefined
/// entities declared again, nor of what follows an undeclared parameter entity).
void Gate::OnDoctypeToken(void* user, const XML_Char* text, int length)
{
    const std::string_view token(text, static_cast<std::size_t>(length));
    if (token == "<!ENTITY") {
        Of(user).Refuse("entity declarations are not supported");
    } else if (token.size() > 2 && token.front() == '%') {
        Of(user).Refuse("parameter entities are not supported");
    }
}

void Gate::OnSkippedEntity(void* user, const XML_Char*, int)
{
    Of(user).Refuse("undefined entity");
}

void Gate::Refuse(std::string_view reason) noexcept
{
    m_refusal = reason;
    m_refusedAt = Offset();
    XML_StopParser(m_parser.get(), XML_FALSE);
}

void Gate::SetHandlers() noexcept
{
    XML_Parser parser = m_parser.get();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, OnStart, OnEnd);
    XML_SetXmlDeclHandler(parser, OnDeclaration);
    XML_SetDoctypeDeclHandler(parser, OnDoctype, OnDoctypeEnd);
    XML_SetSkippedEntityHandler(parser, OnSkippedEntity);
}

void Gate::Feed(std::string_view piece, bool isLast)
{
    if (XML_Parse(m_parser.get(), piece.data(), static_cast<int>(piece.size()), isLast ? 1 : 0) != XML_STATUS_OK) {
        ThrowFailure();
    }
}

void Gate::ThrowFailure() const
{
    if (m_exception) {
        std::rethrow_exception(m_exception);
    }
    const XML_Error error = XML_GetErrorCode(m_parser.get());
    if (error == XML_ERROR_NO_MEMORY) {
        throw std::bad_alloc();
    }
    const Position position = PositionOf(m_text, error == XML_ERROR_ABORTED ? m_refusedAt : Offset());
    throw ParsingException(position.line, position.column,
                           std::string(error == XML_ERROR_ABORTED ? m_refusal : XML_ErrorString(error)));
}

std::unique_ptr<SpanTree> Gate::Run()
{
    m_parser.reset(XML_ParserCreate("UTF-8"));
    if (!m_parser) {
        throw std::bad_alloc();
    }
    SetHandlers();
    Feed(kSignature, false);
    std::size_t pieceBytes = kPieceBytes;
    std::uint32_t readBefore = 0;
    for (std::size_t at = 0; at < m_text.size();) {
        const std::string_view piece = m_text.substr(at, pieceBytes);
        Feed(piece, false);
        at += piece.size();
        // Inside one huge token Expat starts over with every piece: doubling them keeps its cost linear.
        const std::uint32_t read = Offset();
        pieceBytes = read == readBefore ? pieceBytes * 2 : kPieceBytes;
        readBefore = read;
    }
    Feed({}, true);
    m_tree->CloseParsed(SpanTree::kDocument, m_read, static_cast<std::uint32_t>(m_text.size()));
    return std::move(m_tree);
}

}  // namespace

std::unique_ptr<SpanTree> BuildTree(std::string text, std::optional<UTF_ENCODINGS> encoding)
{
    return Gate(std::move(text), encoding).Run();
}

}  // namespace AdvXMLParser
