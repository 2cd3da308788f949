#include "common/PrivateProfile.h"

#include <cstdint>
#include <mutex>

#include "common/CzuLogger.h"
#include "platform/HeldFile.h"
#include "platform/ProfileFile.h"
#include "text/IniText.h"
#include "text/Utf.h"
#include "text/Utf16Bytes.h"

namespace zupm {

namespace {

constexpr std::uint32_t kSubsystem = 0x800;
/// How long one setting waits for other writers of its file, those that take no lock included.
constexpr std::chrono::milliseconds kPatience(20'000);

/// A setting is written at a time, and each waits for the disk once: for the bytes, but not for the folder as well.
constexpr Durability kDurability = Durability::LeftToTheSystem;

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

/// An 8-bit file as UTF-16 with a signature; nothing when a byte of it would be lost.
std::optional<std::string> AsUtf16(std::string_view bytes)
{
    const std::optional<std::u16string> text =
        bytes.starts_with(kUtf8Signature) ? ToUtf16(bytes.substr(kUtf8Signature.size())) : EightBitProfileText(bytes);
    if (!text) {
        return std::nullopt;
    }
    std::string wide(kUtf16LittleEndianSignature);
    AppendUnits(*text, ByteOrder::LittleEndian, wide);
    return wide;
}

/// Whether the file's encoding has every character of the setting.
bool Holds(std::string_view bytes, const ProfileSetting& setting)
{
    const bool isUtf16 = bytes.starts_with(kUtf16LittleEndianSignature) || bytes.starts_with(kUtf16BigEndianSignature);
    return isUtf16 || (EightBitProfileHolds(setting.section) && EightBitProfileHolds(setting.key) &&
                       EightBitProfileHolds(setting.value));
}

/// The file's bytes with the setting; nothing when that would lose text of the file, or the system refuses.
std::optional<std::string> WithSetting(const std::string& bytes, const ProfileSetting& setting)
{
    if (Holds(bytes, setting)) {
        return EditedProfile(bytes, setting);
    }
    const std::optional<std::string> wide = AsUtf16(bytes);
    return wide ? EditedProfile(*wide, setting) : std::nullopt;
}

/// Puts the setting into the file that is held, and replaces it; FileChanged when somebody who takes no lock changed
/// it.
result::Code WriteHeld(const ProfileSetting& setting, HeldFile& file)
{
    std::string bytes;
    if (const result::Code code = file.Read(bytes); code < 0) {
        return code;
    }
    const std::optional<std::string> changed = WithSetting(bytes, setting);
    if (!changed) {
        return result::NotSupported;
    }
    return *changed == bytes ? result::Success : file.Replace(*changed, &bytes, kDurability);
}

/// Reads the file, puts the setting in and replaces the file, holding its lock: another process that exports into the
/// same file at the same time must lose nothing.
result::Code Write(const ProfileSetting& setting, std::u16string_view path)
{
    const std::lock_guard lock(g_profileLock);
    const auto end = std::chrono::steady_clock::now() + kPatience;
    result::Code code = result::FileChanged;
    while (MayPass(code) && std::chrono::steady_clock::now() < end) {
        HeldFile file;
        code = OpenLocked(path, kPatience, file);
        if (code == result::FileNotFound) {
            const std::optional<std::string> first = WithSetting({}, setting);
            return first ? ReplaceFileAtomically(path, *first, kDurability) : result::NotSupported;
        }
        // A file system without locks still takes the setting.
        if (code == result::Success || (code == result::NotSupported && file.IsOpen())) {
            code = WriteHeld(setting, file);
        }
    }
    return code;
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

std::u16string ProfileName(std::u16string_view name)
{
    std::u16string folded(WithoutIniBlanks(name));
    FoldProfileCase(folded);
    return folded;
}

}  // namespace zupm
