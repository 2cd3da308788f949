#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <string_view>

#include "tools/zupolicy/client/UnguessableName.h"

namespace zupm::tool {

std::wstring UnguessableDigits()
{
    constexpr std::wstring_view kDigits = L"0123456789abcdef";
    std::array<unsigned char, 16> bytes{};
    if (BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(bytes.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG) < 0) {
        SetLastError(ERROR_GEN_FAILURE);
        return {};
    }
    std::wstring digits;
    for (const unsigned byte : bytes) {
        digits.push_back(kDigits[byte >> 4u]);
        digits.push_back(kDigits[byte & 0xFu]);
    }
    return digits;
}

std::wstring TemporaryBeside(const std::wstring& file)
{
    const std::wstring digits = UnguessableDigits();
    const std::size_t end = file.find_last_of(L"/\\");
    const std::wstring folder = end == file.npos ? std::wstring() : file.substr(0, end + 1);
    return digits.empty() ? std::wstring() : folder + L".zu" + digits + L".tmp";
}

}  // namespace zupm::tool
