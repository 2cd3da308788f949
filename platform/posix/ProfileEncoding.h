/// How an INI file's bytes hold its text.
#pragma once

#include <string>
#include <string_view>

namespace zupm::native {

enum class ProfileEncoding { Utf8, Utf8Signed, Utf16LittleEndianSigned, Utf16BigEndianSigned };

/// A decoded INI file. In 8-bit text a byte that is no UTF-8 becomes a unit of U+DC80 to U+DCFF, which valid text
/// cannot hold, and EncodeProfile makes the same byte of it.
struct ProfileText {
    ProfileEncoding encoding = ProfileEncoding::Utf8;
    std::u16string text;
};

/// Half a unit at the end of UTF-16 is taken for a whole one, its other half zero.
[[nodiscard]] ProfileText DecodeProfile(std::string_view bytes);
[[nodiscard]] std::string EncodeProfile(const ProfileText& profile);

}  // namespace zupm::native
