/// ISO-8859-1, the one encoding that cannot hold every character.
#pragma once

#include <string>
#include <string_view>

namespace AdvXMLParser {

/// Turns bytes into UTF-8. Always true: every byte is a character.
[[nodiscard]] bool DecodeLatin1(std::string& bytes);

/// Turns the UTF-8 text of a document into bytes that begin with the signature. What ISO-8859-1 cannot hold becomes a
/// character reference in content and attribute values; a CDATA section is split around it. False when such a character
/// is in a name, a comment, a processing instruction or the DOCTYPE, where no reference is possible.
[[nodiscard]] bool EncodeLatin1(std::string& text, std::string_view signature);

}  // namespace AdvXMLParser
