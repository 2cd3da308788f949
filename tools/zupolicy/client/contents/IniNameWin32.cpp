#include <windows.h>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/IniName.h"

namespace zupm::tool {
namespace {

/// Takes whatever is no UTF-8 for U+FFFD: a file may be overwritten while it is read.
std::u16string Wide(std::string_view utf8)
{
    if (utf8.empty()) {
        return {};
    }
    const auto length = static_cast<int>(utf8.size());
    std::u16string wide(utf8.size(), u'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, reinterpret_cast<wchar_t*>(wide.data()), length)));
    return wide;
}

}  // namespace

std::string IniName(std::string_view utf8)
{
    std::u16string folded = Wide(WithoutIniBlanks(utf8));
    CharUpperBuffW(reinterpret_cast<wchar_t*>(folded.data()), static_cast<DWORD>(folded.size()));
    return ToUtf8(folded);
}

}  // namespace zupm::tool
