#include "platform/PrivateProfile.h"

#include <cstdint>
#include <mutex>

#include "platform/Files.h"
#include "platform/ProfileFile.h"
#include "platform/common/CzuLogger.h"

namespace zupm {

namespace {

constexpr std::uint32_t kSubsystem = 0x800;

// Two threads that write into one file must not lose one another's setting between reading and replacing it.
std::mutex g_profileLock;

bool BreaksALine(std::u16string_view text)
{
    constexpr std::u16string_view kForbidden(u"\0\r\n", 3);
    return text.find_first_of(kForbidden) != text.npos;
}

/// The part of the setting that would inject another or cut this one off; empty without one.
std::u16string_view RefusedPart(const ProfileSetting& setting)
{
    if (BreaksALine(setting.section)) {
        return u"section";
    }
    if (BreaksALine(setting.key)) {
        return u"key";
    }
    return BreaksALine(setting.value) ? u"value" : u"";
}

/// Reads the file, puts the setting in and replaces the file: the one place that does.
result::Code Write(const ProfileSetting& setting, std::u16string_view path)
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
    return read == result::Success && *changed == bytes ? result::Success : ReplaceProfile(path, *changed);
}

}  // namespace

bool WritePrivateProfileStringW(std::u16string_view section, std::u16string_view key, std::u16string_view value,
                                std::u16string_view path) noexcept
{
    try {
        const ProfileSetting setting{section, key, value};
        if (const std::u16string_view part = RefusedPart(setting); !part.empty()) {
            // The names may be the part at fault: they are not for the log.
            CzuLogger::AddMessageW(
                kSubsystem, kLogFailure,
                u"WritePrivateProfileStringW() - setting refused: a line break or null character in its %s", part);
            return false;
        }
        return Write(setting, ProfilePath(path)) >= 0;
    } catch (...) {
        return false;
    }
}

}  // namespace zupm
