#include "platform/win32/UnguessableName.h"

#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <string_view>

namespace zupm::win32 {

result::Code AppendUnguessable(std::u16string& name)
{
    std::array<unsigned char, 16> random{};
    if (BCryptGenRandom(nullptr, random.data(), static_cast<ULONG>(random.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG) <
        0) {
        return result::InputOutputError;
    }
    constexpr std::u16string_view kDigits = u"0123456789abcdef";
    for (const unsigned char byte : random) {
        name += kDigits[byte >> 4U];
        name += kDigits[byte & 15U];
    }
    return result::Success;
}

result::Code UnguessableName(std::u16string& name)
{
    name = u"~";
    const result::Code code = AppendUnguessable(name);
    name += u".tmp";
    return code;
}

}  // namespace zupm::win32
