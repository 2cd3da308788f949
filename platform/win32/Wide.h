/// Text on its way to and from the operating system, whose wide character is UTF-16 as well.
#pragma once

#include <string>
#include <string_view>

namespace zupm::win32 {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

/// The same text, null-terminated, for a call; valid while `text` is.
[[nodiscard]] inline const wchar_t* Wide(const std::u16string& text) noexcept
{
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

/// Room for a call to write `text.size()` units into.
[[nodiscard]] inline wchar_t* WideBuffer(std::u16string& text) noexcept
{
    return reinterpret_cast<wchar_t*>(text.data());
}

/// A copy of a text that the operating system handed out.
[[nodiscard]] inline std::u16string FromWide(std::wstring_view text)
{
    return {text.begin(), text.end()};
}

}  // namespace zupm::win32
