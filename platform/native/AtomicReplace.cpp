// What happens to a file that is replaced:
//   mode, owner, group, extended attributes, access list   kept; when they cannot be kept, the replacement is refused
//   symbolic link     stays; the file at its end is replaced, or created
//   hard links        the other names keep the old file: one name is what can change in one step
//   new file          gets what the umask (or the folder's default access list) gives to any new file
//   device, pipe      is written as it is
// A failure to flush the folder is the one failure after which the new file is in place: InputOutputError says then
// that a loss of power may bring the old one back. A folder that may not be read cannot be flushed; that is no failure.
#include "platform/native/AtomicReplace.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <string>

#include "platform/native/DirectWrite.h"
#include "platform/native/FileErrors.h"
#include "platform/native/FileMetadata.h"
#include "platform/native/FolderFlush.h"
#include "platform/native/NativePath.h"

namespace zupm::native {

namespace {

constexpr mode_t kOwnerAlone = 0600;
constexpr mode_t kWhatTheUmaskLeaves = 0666;
constexpr int kMostNames = 16;

/// A name that nobody can know beforehand; empty, with errno, when the system has no random bytes.
std::string UnguessableName()
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::array<unsigned char, 16> bytes{};
    const ssize_t count = Retry([&] { return Calls().getrandom(bytes.data(), bytes.size(), 0); });
    if (count != static_cast<ssize_t>(bytes.size())) {
        return {};
    }
    std::string name = ".zu";
    for (const unsigned byte : bytes) {
        name.push_back(kDigits[byte >> 4]);
        name.push_back(kDigits[byte & 0xFu]);
    }
    return name.append(".tmp");
}

/// One replacement under way.
///
/// Lifetime  One call; destroying it removes the temporary file unless that has become the target.
class Replacement {
public:
    Replacement(std::string_view bytes, Durability durability) noexcept : m_bytes(bytes), m_durability(durability) {}
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement()
    {
        if (!m_temporaryName.empty()) {
            Retry([&] { return Calls().unlinkat(m_folder.Get(), m_temporaryName.c_str(), 0); });
        }
    }

    /// `path` ends with no symbolic link.
    [[nodiscard]] result::Code Run(const std::string& path)
    {
        using Step = result::Code (Replacement::*)();
        constexpr Step kSteps[] = {
            &Replacement::OpenTarget,      &Replacement::CreateTemporary, &Replacement::WriteTemporary,
            &Replacement::CopyTargetState, &Replacement::FinishTemporary, &Replacement::Rename,
            &Replacement::FlushName,
        };
        result::Code code = OpenFolderOf(path);
        for (const Step step : kSteps) {
            if (code != result::Success) {
                break;
            }
            code = (this->*step)();
        }
        return code;
    }

private:
    result::Code OpenFolderOf(const std::string& path)
    {
        FolderAndName parts = SplitPath(path);
        m_name = std::move(parts.name);
        const result::Code code = OpenFolder(parts.folder, m_folder);
        if (code == result::Success && m_name.empty()) {
            return result::AccessDenied;
        }
        if (code == result::Success && m_durability == Durability::Flushed) {
            // Opened before anything changes: afterwards only the flush itself can still fail.
            return OpenToFlush(m_folder.Get(), ".", m_folderToFlush);
        }
        return code;
    }

    /// Opening the target for writing, without doing so, is the system's own answer to whether it may be written.
    result::Code OpenTarget()
    {
        m_target = OpenBelow(m_folder.Get(), m_name.c_str(), O_WRONLY | O_NOFOLLOW);
        if (!m_target) {
            return errno == ENOENT ? result::Success : LastError();
        }
        if (Calls().fstat(m_target.Get(), &m_status) != 0) {
            return LastError();
        }
        return S_ISREG(m_status.st_mode) ? result::Success : result::NotSupported;
    }

    result::Code CreateTemporary()
    {
        const mode_t mode = m_target ? kOwnerAlone : kWhatTheUmaskLeaves;
        for (int tries = 0; tries < kMostNames; ++tries) {
            std::string name = UnguessableName();
            if (name.empty()) {
                return LastError();
            }
            m_temporary = OpenBelow(m_folder.Get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
            if (m_temporary) {
                m_temporaryName = std::move(name);
                return result::Success;
            }
            if (errno != EEXIST) {
                break;
            }
        }
        return LastError();
    }

    result::Code WriteTemporary() { return WriteAll(m_temporary.Get(), m_bytes); }

    result::Code CopyTargetState()
    {
        return m_target ? CopyMetadata(m_target.Get(), m_status, m_temporary.Get()) : result::Success;
    }

    result::Code FinishTemporary()
    {
        // Before the rename in any case: the new name may reach the disk at once, and then its bytes must be there.
        if (Retry([&] { return Calls().fsync(m_temporary.Get()); }) != 0) {
            return LastError();
        }
        return m_temporary.Close() ? result::Success : LastError();
    }

    result::Code Rename()
    {
        const int folder = m_folder.Get();
        if (Retry([&] { return Calls().renameat(folder, m_temporaryName.c_str(), folder, m_name.c_str()); }) != 0) {
            return LastError();
        }
        m_temporaryName.clear();
        return result::Success;
    }

    result::Code FlushName() { return FlushFolder(m_folderToFlush); }

    std::string_view m_bytes;
    Durability m_durability;
    FileHandle m_folder;
    FileHandle m_folderToFlush;
    std::string m_name;
    FileHandle m_target;
    struct stat m_status {};
    FileHandle m_temporary;
    std::string m_temporaryName;
};

}  // namespace

result::Code ReplaceFile(std::u16string_view path, std::string_view bytes, Durability durability)
{
    std::optional<std::string> target = ToNativePath(path);
    if (!target) {
        return result::InvalidName;
    }
    // Asked before links are followed: some, such as those of open files, lead to no name at all.
    if (IsSpecialFile(*target)) {
        return WriteSpecialFile(*target, bytes);
    }
    if (const result::Code code = FollowLinks(*target); code != result::Success) {
        return code;
    }
    return Replacement(bytes, durability).Run(*target);
}

}  // namespace zupm::native
