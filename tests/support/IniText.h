/// The text of INI files, in whichever encoding a target writes them.
#pragma once

#include <string>
#include <string_view>

namespace zupm::test {

/// The text of a file: UTF-16 with a signature, else UTF-8, else one character a byte (a Latin code page).
[[nodiscard]] std::u16string DecodeIni(std::string_view bytes);

}  // namespace zupm::test
