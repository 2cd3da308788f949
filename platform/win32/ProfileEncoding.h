/// The bytes of INI files as Windows reads them: UTF-16 with a signature, otherwise the system's 8-bit code page.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm::win32 {

enum class ProfileEncoding {
    CodePage,
    /// Bytes that do not survive the way through the code page and back: one unit stands for one byte.
    RawBytes,
    Utf16,
};

/// The text of a file that can be written back byte for byte.
struct ProfileText {
    std::u16string text;
    ProfileEncoding encoding;
};

/// The text of a file. Nothing for encodings that readers of INI files do not know and in which an added line would be
/// noise: UTF-16 with its high bytes first, and UTF-16 with half a unit at its end.
[[nodiscard]] std::optional<ProfileText> DecodeProfile(std::string_view bytes);

/// The bytes of a text; nothing when the encoding cannot hold it.
[[nodiscard]] std::optional<std::string> EncodeProfile(std::u16string_view text, ProfileEncoding encoding);

/// A name or value as it looks among the text of such a file; nothing when the encoding cannot hold it.
[[nodiscard]] std::optional<std::u16string> InEncoding(std::u16string_view text, ProfileEncoding encoding);

}  // namespace zupm::win32
