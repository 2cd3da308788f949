/// What precedes the content of an element: the text before its start tag, and that tag.
#pragma once

#include <cstddef>
#include <string_view>

namespace AdvXMLParser {

/// Where the start tag at the end of a text without other tags begins; 0 in an empty text. Other markup before it can
/// only be comments and processing instructions; the tag itself holds a single '<'.
[[nodiscard]] inline std::size_t StartTagIn(std::string_view opening) noexcept
{
    const std::size_t markup = opening.find('<');
    if (markup == std::string_view::npos) {
        return 0;
    }
    const char kind = opening[markup + 1];
    return kind == '!' || kind == '?' ? opening.rfind('<') : markup;
}

/// The name in a start tag.
[[nodiscard]] inline std::string_view NameIn(std::string_view startTag) noexcept
{
    const std::string_view tag = startTag.substr(1);
    return tag.substr(0, tag.find_first_of(" \t\r\n/>"));
}

}  // namespace AdvXMLParser
