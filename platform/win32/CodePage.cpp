#include "platform/win32/CodePage.h"

#include <windows.h>

#include <algorithm>

#include "platform/Files.h"
#include "platform/win32/Wide.h"

namespace zupm::win32 {

std::u16string FromCodePage(std::string_view bytes)
{
    if (bytes.empty()) {
        return {};
    }
    // No file is longer than kLargestFile.
    const int length = static_cast<int>(std::min(bytes.size(), kLargestFile));
    const int needed = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
    std::u16string text(static_cast<std::size_t>(std::max(needed, 0)), u'\0');
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, WideBuffer(text), needed);
    return text;
}

std::optional<std::string> ToCodePage(std::u16string_view text)
{
    if (text.empty()) {
        return std::string();
    }
    if (text.size() > kLargestFile) {
        return std::nullopt;
    }
    // UTF-8 as the code page has an error flag, the others report that they replaced a character.
    const bool isUtf8 = GetACP() == CP_UTF8;
    const DWORD flags = isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    WINBOOL replaced = FALSE;
    WINBOOL* const report = isUtf8 ? nullptr : &replaced;
    const auto* const wide = reinterpret_cast<const wchar_t*>(text.data());
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_ACP, flags, wide, length, nullptr, 0, nullptr, report);
    if (needed <= 0 || replaced != FALSE) {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_ACP, flags, wide, length, bytes.data(), needed, nullptr, report);
    return bytes;
}

}  // namespace zupm::win32
