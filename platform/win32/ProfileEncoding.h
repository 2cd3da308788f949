/// The encodings of INI files: UTF-16 with a signature, otherwise the system's 8-bit code page.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm::win32 {

/// True for a file that begins with a signature of UTF-16, of either byte order.
[[nodiscard]] bool IsUtf16(std::string_view bytes) noexcept;

/// True when no character of the text is lost in the code page.
[[nodiscard]] bool CodePageHolds(std::u16string_view text);

/// An 8-bit file as UTF-16 with a signature; one with a signature of UTF-8 is taken for that. Nothing when bytes of it
/// would be lost.
[[nodiscard]] std::optional<std::string> AsUtf16(std::string_view bytes);

}  // namespace zupm::win32
