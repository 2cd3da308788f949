#include <windows.h>

#include <string>

#include "tools/zupolicy/client/contents/LongPath.h"

namespace zupm::tool {

// Without the prefix a path ends at 260 characters. With it the system takes the path as it is, so it must be complete.
std::filesystem::path ForOpening(const std::filesystem::path& path)
{
    std::wstring full(32768, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.size() < MAX_PATH || full.starts_with(L"\\\\")) {
        return path;
    }
    return L"\\\\?\\" + full;
}

}  // namespace zupm::tool
