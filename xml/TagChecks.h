/// What is looked at in start tags beside what Expat looks at.
#pragma once

#include <string_view>

namespace AdvXMLParser {

/// Whether every reference in a start tag is a character reference or one of the predefined five.
[[nodiscard]] bool HasKnownReferencesOnly(std::string_view tag) noexcept;

/// Whether `text` begins with a start tag, complete or not, that has more attributes than are taken: Expat builds them
/// all in memory, at a hundred bytes and more for each, before it reports the tag.
[[nodiscard]] bool HasTooManyAttributes(std::string_view text) noexcept;

}  // namespace AdvXMLParser
