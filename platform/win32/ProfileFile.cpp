// The system's own call rewrites a file in place: a reader can see half of it, a loss of power leaves half of it. It
// also replaces characters outside the code page by question marks. So it edits a private copy here, in an encoding
// that holds the setting, and the file is replaced by that copy's bytes in one step.
#include "platform/ProfileFile.h"

#include <windows.h>

#include <utility>

#include "platform/win32/CodePage.h"
#include "platform/win32/SystemProfile.h"
#include "platform/win32/Wide.h"

namespace zupm {

using namespace win32;

std::u16string ProfilePath(std::u16string_view path)
{
    const bool hasDrive = path.size() >= 2 && path[1] == u':';
    if (path.empty() || hasDrive || path.find_first_of(u"\\/") != path.npos) {
        return std::u16string(path);
    }
    std::u16string folder(MAX_PATH, u'\0');
    folder.resize(GetWindowsDirectoryW(WideBuffer(folder), MAX_PATH));
    return folder.append(u"\\").append(path);
}

bool EightBitProfileHolds(std::u16string_view text)
{
    return ToCodePage(text).has_value();
}

std::optional<std::u16string> EightBitProfileText(std::string_view bytes)
{
    std::u16string text = FromCodePage(bytes);
    return ToCodePage(text) == bytes ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<std::string> EditedProfile(const std::string& bytes, const ProfileSetting& setting)
{
    return WrittenBySystem(bytes, setting);
}

void FoldProfileCase(std::u16string& name)
{
    // A unit at a time, as the system compares names: in a longer text the call would also change pairs of surrogates.
    for (char16_t& unit : name) {
        CharUpperBuffW(reinterpret_cast<wchar_t*>(&unit), 1);
    }
}

}  // namespace zupm
