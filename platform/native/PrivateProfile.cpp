#include "platform/PrivateProfile.h"

#include <mutex>

#include "platform/Files.h"
#include "platform/common/CzuLogger.h"
#include "platform/common/IniText.h"
#include "platform/native/AtomicReplace.h"
#include "platform/native/ProfileEncoding.h"

namespace zupm {

namespace {

using namespace native;

constexpr std::uint32_t kSubsystem = 0x800;

// Two threads that write into one file must not lose one another's setting between reading and replacing it.
constinit std::mutex g_profileLock;

void LogRefusal(std::u16string_view key, std::u16string_view path, std::u16string_view reason)
{
    CzuLogger::AddMessageW(kSubsystem, kLogFailure, u"WritePrivateProfileStringW() - %s of %s was not written: %s", key,
                           path, reason);
}

bool WriteSetting(std::u16string_view section, std::u16string_view key, std::u16string_view value,
                  std::u16string_view path)
{
    if (const std::u16string_view reason = WhyIniRefuses(section, key, value); !reason.empty()) {
        LogRefusal(key, path, reason);
        return false;
    }
    const std::lock_guard lock(g_profileLock);
    std::string bytes;
    const result::Code read = ReadWholeFile(path, bytes);
    if (read != result::Success && read != result::FileNotFound) {
        return false;
    }
    std::optional<ProfileText> profile = DecodeProfile(bytes);
    if (!profile) {
        LogRefusal(key, path, u"the file's encoding is not supported");
        return false;
    }
    std::optional<std::u16string> text = SetIniValue(profile->text, section, key, value);
    if (!text) {
        return false;
    }
    profile->text = *std::move(text);
    // A setting is written at a time, and each waits for the disk once: for the bytes, but not for the folder as well.
    return ReplaceFile(path, EncodeProfile(*profile), Durability::LeftToTheSystem) == result::Success;
}

}  // namespace

bool WritePrivateProfileStringW(std::u16string_view section, std::u16string_view key, std::u16string_view value,
                                std::u16string_view path) noexcept
{
    try {
        return WriteSetting(section, key, value, path);
    } catch (...) {
        return false;
    }
}

}  // namespace zupm
