// The system's own call rewrites a file where it lies: a reader can see half of it, a loss of power leaves half of it.
// And it replaces characters outside the code page by question marks. So it edits a private copy here, in an encoding
// that holds the setting, and the file is replaced by that copy's bytes in one step.
#include "platform/ProfileFile.h"

#include <windows.h>

#include <algorithm>

#include "platform/Files.h"
#include "platform/win32/ProfileEncoding.h"
#include "platform/win32/SystemProfile.h"
#include "platform/win32/Wide.h"
#include "text/CaseFold.h"
#include "text/IniText.h"

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

std::optional<std::string> WithSetting(const std::string& bytes, const ProfileSetting& setting)
{
    if (IsUtf16(bytes) ||
        (CodePageHolds(setting.section) && CodePageHolds(setting.key) && CodePageHolds(setting.value))) {
        return WrittenBySystem(bytes, setting);
    }
    const std::optional<std::string> wide = AsUtf16(bytes);
    return wide ? WrittenBySystem(*wide, setting) : std::nullopt;
}

result::Code ReplaceProfile(std::u16string_view path, std::string_view bytes)
{
    return ReplaceFileAtomically(path, bytes);
}

std::u16string ProfileName(std::u16string_view name)
{
    std::u16string folded(WithoutIniBlanks(name));
    std::ranges::transform(folded, folded.begin(), ToCapital);
    return folded;
}

}  // namespace zupm
