/// Text as the bytes of a file.
#pragma once

#include <string>
#include <string_view>

namespace zupm::test {

/// How a file's bytes hold its text.
enum class Form { Utf8, Utf8Signed, Utf16Le, Utf16LeSigned, Utf16Be, Utf16BeSigned, Latin1 };

/// The bytes of a UTF-8 text in that form, signature included. The text must fit the form.
[[nodiscard]] std::string Encode(std::string_view utf8, Form form);

}  // namespace zupm::test
