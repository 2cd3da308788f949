/// Start-tag checks that Expat does not make.
#pragma once

#include <string_view>

namespace AdvXMLParser {

/// Whether every reference in a start tag is a character reference or one of the predefined five.
[[nodiscard]] bool HasKnownReferencesOnly(std::string_view tag) noexcept;

/// Whether `text` begins with a start tag, complete or not, that has too many attributes. Before Expat reports a tag it
/// holds all its attributes in memory, each in a hundred bytes or more.
[[nodiscard]] bool HasTooManyAttributes(std::string_view text) noexcept;

}  // namespace AdvXMLParser
