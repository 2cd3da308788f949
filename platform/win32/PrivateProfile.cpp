// The operating system's own WritePrivateProfileStringW rewrites the file where it lies (a reader can see half of it, a
// loss of power leaves half of it), replaces characters outside the code page by question marks, and lets a line break
// in a value start a setting of its own. So the text is edited here, by the code that the other target uses too, and
// the file replaced in one step; what is left of the system's call is its encodings.
#include "platform/PrivateProfile.h"

#include <mutex>
#include <optional>

#include "platform/Files.h"
#include "platform/common/CzuLogger.h"
#include "platform/common/IniText.h"
#include "platform/common/Utf.h"
#include "platform/win32/ProfileEncoding.h"

namespace zupm {

namespace {

using win32::EncodeProfile;
using win32::InEncoding;
using win32::ProfileEncoding;

constexpr std::uint32_t kSubsystem = 0x800;

// Two threads that write into one file must not lose one another's setting between reading and replacing it.
std::mutex g_profileLock;

struct Setting {
    std::u16string_view section;
    std::u16string_view key;
    std::u16string_view value;
};

/// The file's bytes with the setting; in UTF-16 when its code page cannot hold the setting. Nothing when the file is in
/// no encoding that could take it without losing what is there.
std::optional<std::string> WithSetting(const std::string& bytes, const Setting& setting)
{
    const std::optional<win32::ProfileText> profile = win32::DecodeProfile(bytes);
    if (!profile) {
        return std::nullopt;
    }
    const auto section = InEncoding(setting.section, profile->encoding);
    const auto key = InEncoding(setting.key, profile->encoding);
    const auto value = InEncoding(setting.value, profile->encoding);
    if (section && key && value) {
        const std::u16string text = SetIniValue(profile->text, *section, *key, *value).value_or(profile->text);
        if (auto encoded = EncodeProfile(text, profile->encoding)) {
            return encoded;
        }
    }
    if (profile->encoding == ProfileEncoding::RawBytes) {
        return std::nullopt;
    }
    const std::u16string text =
        SetIniValue(profile->text, setting.section, setting.key, setting.value).value_or(profile->text);
    return EncodeProfile(text, ProfileEncoding::Utf16);
}

result::Code Write(const Setting& setting, std::u16string_view path)
{
    const std::lock_guard lock(g_profileLock);
    std::string bytes;
    const result::Code read = ReadWholeFile(path, bytes);
    if (read < 0 && read != result::FileNotFound) {
        return read;
    }
    const std::optional<std::string> changed = WithSetting(bytes, setting);
    if (!changed) {
        return result::NotSupported;
    }
    return read == result::Success && *changed == bytes ? result::Success : ReplaceFileAtomically(path, *changed);
}

}  // namespace

bool WritePrivateProfileStringW(std::u16string_view section, std::u16string_view key, std::u16string_view value,
                                std::u16string_view path) noexcept
{
    try {
        if (const std::u16string_view reason = WhyIniRefuses(section, key, value); !reason.empty()) {
            CzuLogger::AddMessageW(kSubsystem, kLogFailure, u"WritePrivateProfileStringW() - setting refused: %s",
                                   reason);
            return false;
        }
        const result::Code code = Write({section, key, value}, path);
        if (code < 0) {
            CzuLogger::AddMessageW(kSubsystem, kLogFailure, u"WritePrivateProfileStringW() - error 0x%08X",
                                   std::uint64_t{static_cast<std::uint32_t>(code)});
        }
        return code >= 0;
    } catch (...) {
        return false;
    }
}

}  // namespace zupm
