/// What policies and tasks do alike with elements.
#pragma once

#include <string_view>

#include "xml/Node.h"

namespace zupm {

/// The attribute by which sections and settings are known.
inline constexpr std::u16string_view kNameAttribute = u"name";

/// The "PathID" of every policy and task that is written back, and the "Path" of groups that have none.
inline constexpr std::u16string_view kDefaultPath = u"0_4";

/// The first child element; the null element when there is none.
[[nodiscard]] inline AdvXMLParser::Element FirstChild(const AdvXMLParser::Element& parent) noexcept
{
    return *parent.Begin();
}

/// The first child whose attribute has exactly that text; null when there is none. A child without the attribute never
/// matches, not even the empty text.
[[nodiscard]] AdvXMLParser::Element FindChildByAttribute(const AdvXMLParser::Element& parent,
                                                         std::u16string_view attribute, std::u16string_view text);

/// Deletes the first section of that name and no other one; false when the container has none.
[[nodiscard]] bool DeleteFirstSection(const AdvXMLParser::Element& container, std::u16string_view name);

/// Throws AdvXMLParser::InvalidCharacterException when XML cannot hold the text: called before an operation of several
/// steps changes anything.
void RequireXmlText(std::u16string_view text);

}  // namespace zupm
