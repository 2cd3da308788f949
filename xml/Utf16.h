/// UTF-16 as the bytes of a file, in either byte order.
#pragma once

#include <string>
#include <string_view>

namespace AdvXMLParser {

/// Turns bytes into UTF-8. False when they are not valid; what is left is then the valid text before the first fault.
[[nodiscard]] bool DecodeUtf16LittleEndian(std::string& bytes);
[[nodiscard]] bool DecodeUtf16BigEndian(std::string& bytes);

/// Turns valid UTF-8 into bytes that begin with the signature. Always true: UTF-16 can hold every character.
[[nodiscard]] bool EncodeUtf16LittleEndian(std::string& text, std::string_view signature);
[[nodiscard]] bool EncodeUtf16BigEndian(std::string& text, std::string_view signature);

}  // namespace AdvXMLParser
