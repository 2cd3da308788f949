// What happens to a file that is replaced:
//   mode, owner, group, extended attributes, access list   kept; when they cannot be kept, the replacement is refused
//   symbolic link     stays; the file at its end is replaced, or created
//   hard links        the other names keep the old file: one name is what can change in one step
//   new file          gets what the umask (or the folder's default access list) gives to any new file
//   device, pipe      is written as it is
// Only after a failure to flush the folder is the new file in place: InputOutputError then means that a loss of power
// may bring the old one back. A folder that may not be read cannot be flushed; that is no failure.
#include "platform/posix/Replacement.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/posix/DirectWrite.h"
#include "platform/posix/FileErrors.h"
#include "platform/posix/FileMetadata.h"
#include "platform/posix/FolderFlush.h"
#include "platform/posix/TargetFiles.h"

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
    if (!FillWithRandomBytes(bytes)) {
        return {};
    }
    std::string name = ".zu";
    for (const unsigned byte : bytes) {
        name.push_back(kDigits[byte >> 4]);
        name.push_back(kDigits[byte & 0xFu]);
    }
    return name.append(".tmp");
}

}  // namespace

Replacement::~Replacement()
{
    if (!m_temporaryName.empty()) {
        Retry([&] { return Calls().unlinkat(m_place.folder.Get(), m_temporaryName.c_str(), 0); });
    }
}

result::Code Replacement::Run(const std::function<result::Code()>& check)
{
    using Step = result::Code (Replacement::*)();
    constexpr Step kPreparation[] = {
        &Replacement::InspectTarget,  &Replacement::OpenFolderToFlush, &Replacement::CreateTemporary,
        &Replacement::WriteTemporary, &Replacement::CopyTargetState,   &Replacement::FinishTemporary,
    };
    for (const Step step : kPreparation) {
        if (const result::Code code = (this->*step)(); code != result::Success) {
            return code;
        }
    }
    if (const result::Code code = check ? check() : result::Success; code != result::Success) {
        return code;
    }
    const result::Code code = Rename();
    return code == result::Success ? FlushName() : code;
}

/// The target was opened for writing: the system's own answer to whether it may be written.
result::Code Replacement::InspectTarget()
{
    if (!m_place.file) {
        return result::Success;
    }
    if (Calls().fstat(m_place.file.Get(), &m_status) != 0) {
        return LastError();
    }
    return S_ISREG(m_status.st_mode) ? result::Success : result::NotSupported;
}

/// Opened before anything changes: afterwards only the flush itself can fail.
result::Code Replacement::OpenFolderToFlush()
{
    if (m_durability != Durability::Flushed) {
        return result::Success;
    }
    return OpenToFlush(m_place.folder.Get(), ".", m_folderToFlush);
}

result::Code Replacement::CreateTemporary()
{
    const mode_t mode = m_place.file ? kOwnerAlone : kWhatTheUmaskLeaves;
    for (int tries = 0; tries < kMostNames; ++tries) {
        std::string name = UnguessableName();
        if (name.empty()) {
            return LastError();
        }
        m_temporary = OpenBelow(m_place.folder.Get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
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

result::Code Replacement::WriteTemporary()
{
    return WriteAll(m_temporary.Get(), m_bytes);
}

result::Code Replacement::CopyTargetState()
{
    return m_place.file ? CopyMetadata(m_place.file.Get(), m_status, m_temporary.Get()) : result::Success;
}

result::Code Replacement::FinishTemporary()
{
    // Before the rename in any case: the new name may reach the disk at once, and then its bytes must be there.
    if (Retry([&] { return Calls().fsync(m_temporary.Get()); }) != 0) {
        return LastError();
    }
    return m_temporary.Close() ? result::Success : LastError();
}

result::Code Replacement::Rename()
{
    const int folder = m_place.folder.Get();
    const auto rename = [&] { return Calls().renameat(folder, m_temporaryName.c_str(), folder, m_place.name.c_str()); };
    if (Retry(rename) != 0) {
        return LastError();
    }
    m_temporaryName.clear();
    m_isInPlace = true;
    return result::Success;
}

result::Code Replacement::FlushName()
{
    return FlushFolder(m_folderToFlush);
}

}  // namespace zupm::native
