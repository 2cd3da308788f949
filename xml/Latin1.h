/// ISO-8859-1, the one encoding that cannot hold every character.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace AdvXMLParser {

/// Bytes to UTF-8; every byte is a character.
[[nodiscard]] std::string DecodeLatin1(std::string_view bytes);

/// A document's UTF-8 text to bytes. What ISO-8859-1 cannot hold becomes a character reference in content and attribute
/// values; a CDATA section is split around it. Nothing when it stands in a name, a comment, a processing instruction or
/// the DOCTYPE, where no reference is possible.
[[nodiscard]] std::optional<std::string> EncodeLatin1(std::string_view utf8);

}  // namespace AdvXMLParser
