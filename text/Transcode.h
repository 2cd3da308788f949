/// UTF-16 and ISO-8859-1 as bytes, from and to UTF-8, at the speed of memory for texts that are mostly ASCII.
///
/// Errors    What appends throws std::bad_alloc.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/Utf16Bytes.h"

namespace zupm {

/// The byte order of a char16_t.
inline constexpr ByteOrder kOwnByteOrder = ByteOrder::LittleEndian;

/// Appends UTF-16 as UTF-8 up to the first unit that is not valid, or half a unit. The number of bytes read: all of
/// them when all are valid. When the room that `utf8` has is too small, it grows once, to the size needed.
[[nodiscard]] std::size_t AppendUtf8OfUtf16(std::string_view bytes, ByteOrder order, std::string& utf8);

/// Appends ISO-8859-1, in which every byte is a character, as UTF-8.
void AppendUtf8OfLatin1(std::string_view bytes, std::string& utf8);

/// Whether ISO-8859-1 has every character of valid UTF-8.
[[nodiscard]] bool FitsLatin1(std::string_view utf8) noexcept;

/// Appends valid UTF-8 as ISO-8859-1, which has all of its characters.
void AppendLatin1OfUtf8(std::string_view utf8, std::string& bytes);

/// Appends valid UTF-8 as UTF-16.
void AppendUtf16OfUtf8(std::string_view utf8, ByteOrder order, std::string& bytes);

/// The units that valid UTF-8 takes as UTF-16.
[[nodiscard]] std::size_t LengthInUtf16(std::string_view utf8) noexcept;

/// Writes valid UTF-8 as units in the machine's order and returns how many these are: LengthInUtf16. `units` needs no
/// alignment.
std::size_t WriteUtf16(std::string_view utf8, void* units) noexcept;

/// The longest start of valid UTF-8 that takes at most `size` bytes and ends between two characters. Not empty when
/// `size` is at least 4.
[[nodiscard]] std::string_view PieceOfUtf8(std::string_view utf8, std::size_t size) noexcept;

}  // namespace zupm
