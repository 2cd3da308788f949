/// References in text and in attribute values.
#pragma once

namespace AdvXMLParser {

/// Whether the '&' at `at` begins one of the five predefined references or a reference to a character that XML can
/// hold. The text ends in a zero byte.
[[nodiscard]] bool IsReferenceAt(const char* at) noexcept;

}  // namespace AdvXMLParser
