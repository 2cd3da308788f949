#include "platform/ProfileFile.h"

#include "platform/posix/AtomicReplace.h"
#include "platform/posix/ProfileEncoding.h"
#include "text/IniText.h"
#include "text/Utf.h"

namespace zupm {

namespace {

using namespace native;

bool Holds(ProfileEncoding encoding, const ProfileSetting& setting)
{
    if (encoding == ProfileEncoding::Utf16LittleEndianSigned || encoding == ProfileEncoding::Utf16BigEndianSigned) {
        return true;
    }
    // UTF-8 lacks the unpaired surrogates alone.
    return FindInvalidUtf16(setting.section) == kValid && FindInvalidUtf16(setting.key) == kValid &&
           FindInvalidUtf16(setting.value) == kValid;
}

}  // namespace

std::u16string ProfilePath(std::u16string_view path)
{
    return std::u16string(path);
}

std::optional<std::string> WithSetting(const std::string& bytes, const ProfileSetting& setting)
{
    ProfileText profile = DecodeProfile(bytes);
    if (!Holds(profile.encoding, setting)) {
        if (FindInvalidUtf16(profile.text) != kValid) {
            return std::nullopt;  // bytes that are no UTF-8 have no place in UTF-16
        }
        profile.encoding = ProfileEncoding::Utf16LittleEndianSigned;
    }
    std::u16string text = SetIniValue(profile.text, setting.section, setting.key, setting.value);
    if (text == profile.text) {
        return bytes;
    }
    profile.text = std::move(text);
    std::string changed = EncodeProfile(profile);
    // Blanks before stray bytes are gone now: what is left must not pass for a signature.
    return DecodeProfile(changed).encoding == profile.encoding ? std::optional(std::move(changed)) : std::nullopt;
}

result::Code ReplaceProfile(std::u16string_view path, std::string_view bytes)
{
    // A setting is written at a time, and each waits for the disk once: for the bytes, but not for the folder as well.
    return ReplaceFile(path, bytes, Durability::LeftToTheSystem);
}

std::u16string ProfileName(std::u16string_view name)
{
    return IniName(name);
}

}  // namespace zupm
