#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <string_view>

#include "tools/zupolicy/client/UnguessableName.h"

namespace zupm::tool {

std::wstring UnguessableName()
{
    constexpr std::wstring_view kDigits = L"0123456789abcdef";
    std::array<unsigned char, 16> bytes{};
    if (BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(bytes.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG) < 0) {
        SetLastError(ERROR_GEN_FAILURE);
        return {};
    }
    std::wstring name = L".zu";
    for (const unsigned byte : bytes) {
        name.push_back(kDigits[byte >> 4u]);
        name.push_back(kDigits[byte & 0xFu]);
    }
    return name + L".tmp";
}

std::wstring FolderOf(const std::wstring& path)
{
    const std::size_t end = path.find_last_of(L"/\\");
    return end == path.npos ? std::wstring() : path.substr(0, end + 1);
}

}  // namespace zupm::tool
