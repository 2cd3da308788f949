#include "xml/Parser.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "text/Utf.h"
#include "xml/BuildTree.h"
#include "xml/Exceptions.h"
#include "xml/Position.h"
#include "xml/SpanTree.h"

namespace AdvXMLParser {

std::unique_ptr<Document> Parser::Parse(XmlText text, std::uint32_t levels) const
{
    RequireParsableSize(text);
    return std::make_unique<Document>(BuildTree(std::move(text), levels));
}

std::unique_ptr<Document> Parser::Parse(const char16_t* text, std::size_t length, std::uint32_t levels) const
{
    const std::u16string_view wide(text, length);
    std::optional<std::string> utf8 = zupm::ToUtf8(wide);
    if (!utf8) {
        const std::string valid = *zupm::ToUtf8(wide.substr(0, zupm::FindInvalidUtf16(wide)));
        const Position position = PositionOf(valid, valid.size());
        throw ParsingException(position.line, position.column, "unpaired surrogate");
    }
    return Parse(XmlText(std::move(*utf8)), levels);
}

}  // namespace AdvXMLParser
