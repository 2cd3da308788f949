#include <windows.h>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/IniName.h"

namespace zupm::tool {

std::string IniName(std::string_view utf8)
{
    // A file may be overwritten while it is read, so whatever is not UTF-8 counts as U+FFFD.
    std::u16string folded = ToUtf16Lossy(WithoutIniBlanks(utf8));
    CharUpperBuffW(reinterpret_cast<wchar_t*>(folded.data()), static_cast<DWORD>(folded.size()));
    return ToUtf8(folded);
}

}  // namespace zupm::tool
