#include "xml/DocumentReader.h"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

#include "Failure.h"
#include "xml/Attributes.h"
#include "xml/ContentsBuilder.h"

namespace zupm::tool {
namespace {

/// One running parse: what Expat calls back into.
struct Parse {
    XML_Parser parser = nullptr;
    ContentsBuilder builder;

    [[nodiscard]] Position Here() const
    {
        // Expat counts columns from 0.
        return {XML_GetCurrentLineNumber(parser), XML_GetCurrentColumnNumber(parser) + 1};
    }
};

void XMLCALL OnStart(void* data, const XML_Char* name, const XML_Char** attributes)
{
    auto& parse = *static_cast<Parse*>(data);
    // Attributes that only a document type declares are not there for the component either.
    const auto count = static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parse.parser));
    parse.builder.Open(name, Attributes(attributes, count), parse.Here());
}

void XMLCALL OnEnd(void* data, const XML_Char*)
{
    static_cast<Parse*>(data)->builder.Close();
}

void XMLCALL OnText(void* data, const XML_Char* text, int length)
{
    static_cast<Parse*>(data)->builder.Text(std::string_view(text, static_cast<std::size_t>(length)));
}

/// Expat takes lengths as int, so a long text goes in by pieces.
bool Feed(XML_Parser parser, std::string_view text)
{
    constexpr std::size_t kPiece = std::size_t{16} << 20u;
    while (text.size() > kPiece) {
        if (XML_Parse(parser, text.data(), static_cast<int>(kPiece), XML_FALSE) != XML_STATUS_OK) {
            return false;
        }
        text.remove_prefix(kPiece);
    }
    return XML_Parse(parser, text.data(), static_cast<int>(text.size()), XML_TRUE) == XML_STATUS_OK;
}

}  // namespace

FileContents ReadDocument(const std::string& text)
{
    // The text was decoded already: the encoding that its declaration names no longer applies.
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                              &XML_ParserFree);
    if (!parser) {
        throw std::bad_alloc();
    }
    Parse parse{parser.get(), {}};
    XML_SetUserData(parser.get(), &parse);
    XML_SetElementHandler(parser.get(), OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser.get(), OnText);
    if (!Feed(parser.get(), text)) {
        const char* reason = XML_ErrorString(XML_GetErrorCode(parser.get()));
        throw Failure(ExitCode::Other, std::string("the document's text cannot be parsed: ") + reason);
    }
    return parse.builder.Take();
}

}  // namespace zupm::tool
