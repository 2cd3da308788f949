#include <windows.h>

#include "text/IniName.h"
#include "text/Utf8.h"

namespace zupm::tool {

std::string IniName(std::string_view utf8)
{
    std::u16string folded = FromUtf8(WithoutIniBlanks(utf8));
    CharUpperBuffW(reinterpret_cast<wchar_t*>(folded.data()), static_cast<DWORD>(folded.size()));
    return ToUtf8(folded);
}

}  // namespace zupm::tool
