#include "platform/ProfileFile.h"

#include <algorithm>

#include "platform/posix/ProfileEncoding.h"
#include "text/AsciiCase.h"
#include "text/IniText.h"
#include "text/Utf.h"

namespace zupm {

std::u16string ProfilePath(std::u16string_view path)
{
    return std::u16string(path);
}

bool EightBitProfileHolds(std::u16string_view text)
{
    // UTF-8 lacks the unpaired surrogates alone.
    return FindInvalidUtf16(text) == kValid;
}

std::optional<std::u16string> EightBitProfileText(std::string_view bytes)
{
    return ToUtf16(bytes);
}

std::optional<std::string> EditedProfile(const std::string& bytes, const ProfileSetting& setting)
{
    native::ProfileText profile = native::DecodeProfile(bytes);
    std::u16string text = SetIniValue(profile.text, setting.section, setting.key, setting.value);
    if (text == profile.text) {
        return bytes;
    }
    profile.text = std::move(text);
    std::string changed = native::EncodeProfile(profile);
    // Blanks before stray bytes are gone now: what is left must not pass for a signature.
    const bool keepsEncoding = native::DecodeProfile(changed).encoding == profile.encoding;
    return keepsEncoding ? std::optional(std::move(changed)) : std::nullopt;
}

void FoldProfileCase(std::u16string& name)
{
    std::ranges::transform(name, name.begin(), FoldAscii<char16_t>);
}

}  // namespace zupm
