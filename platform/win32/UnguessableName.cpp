#include "platform/win32/UnguessableName.h"

#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <string_view>

namespace zupm::win32 {

result::Code UnguessableName(std::u16string& name)
{
    std::array<unsigned char, 16> random{};
    if (BCryptGenRandom(nullptr, random.data(), static_cast<ULONG>(random.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG) <
        0) {
        return result::InputOutputError;
    }
    constexpr std::u16string_view kDigits = u"0123456789abcdef";
    name = u"~";
    for (const unsigned char byte : random) {
        name += kDigits[byte >> 4U];
        name += kDigits[byte & 15U];
    }
    name += u".tmp";
    return result::Success;
}

}  // namespace zupm::win32
