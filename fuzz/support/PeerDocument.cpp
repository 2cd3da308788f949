#include "fuzz/support/PeerDocument.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <memory>

namespace zupm::fuzz {

namespace {

/// Collects elements while libxml2 parses. What is not well-formed may end or hold text where nothing is open.
struct Reader {
    PeerDocument document;
    std::vector<std::size_t> open;
};

std::string TextOf(const xmlChar* text)
{
    return text == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(text));
}

/// An attribute's value. Where entities are not replaced, and they are not, libxml2 leaves this one reference for its
/// tree builder to decode.
std::string ValueOf(const xmlChar* text)
{
    constexpr std::string_view kAmpersand = "&#38;";
    std::string value = TextOf(text);
    for (std::size_t at = value.find(kAmpersand); at != std::string::npos; at = value.find(kAmpersand, at + 1)) {
        value.replace(at, kAmpersand.size(), "&");
    }
    return value;
}

Reader& ReaderOf(void* context)
{
    return *static_cast<Reader*>(static_cast<xmlParserCtxt*>(context)->_private);
}

void OnStart(void* context, const xmlChar* name, const xmlChar** attributes)
{
    Reader& reader = ReaderOf(context);
    PeerElement& element = reader.document.elements.emplace_back();
    element.name = TextOf(name);
    element.depth = reader.open.size();
    for (const xmlChar** at = attributes; at != nullptr && *at != nullptr; at += 2) {
        element.attributes.emplace_back(TextOf(at[0]), ValueOf(at[1]));
    }
    reader.open.push_back(reader.document.elements.size() - 1);
}

void OnEnd(void* context, const xmlChar*)
{
    if (Reader& reader = ReaderOf(context); !reader.open.empty()) {
        reader.open.pop_back();
    }
}

void OnText(void* context, const xmlChar* text, int length)
{
    if (Reader& reader = ReaderOf(context); !reader.open.empty()) {
        reader.document.elements[reader.open.back()].text.append(reinterpret_cast<const char*>(text),
                                                                 static_cast<std::size_t>(length));
    }
}

/// libxml2's own handlers keep the DOCTYPE; elements and text go to the reader.
xmlSAXHandler MakeHandler()
{
    xmlSAXHandler handler{};
    xmlSAXVersion(&handler, 1);
    handler.startElement = OnStart;
    handler.endElement = OnEnd;
    handler.characters = OnText;
    handler.ignorableWhitespace = OnText;
    handler.cdataBlock = OnText;
    handler.reference = nullptr;
    handler.comment = nullptr;
    handler.processingInstruction = nullptr;
    return handler;
}

struct ContextDeleter {
    void operator()(xmlParserCtxt* context) const noexcept
    {
        xmlFreeDoc(context->myDoc);
        xmlFreeParserCtxt(context);
    }
};

}  // namespace

PeerReading ReadWithPeer(std::string_view bytes)
{
    static const xmlSAXHandler handler = MakeHandler();
    const std::unique_ptr<xmlParserCtxt, ContextDeleter> context(
        xmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size())));
    if (!context) {
        return {std::nullopt, "no text"};
    }
    Reader reader;
    *context->sax = handler;
    context->_private = &reader;
    xmlCtxtUseOptions(context.get(), XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    xmlParseDocument(context.get());
    if (context->wellFormed == 0) {
        const xmlError* const error = xmlCtxtGetLastError(context.get());
        return {std::nullopt, error == nullptr || error->message == nullptr ? "unknown" : error->message};
    }
    return {std::move(reader.document), {}};
}

}  // namespace zupm::fuzz
