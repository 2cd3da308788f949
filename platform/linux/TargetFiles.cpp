#include "platform/posix/TargetFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>

#include "platform/posix/FileErrors.h"

namespace zupm::native {

FileHandle OpenToSearch(int folder, const char* path) noexcept
{
    return OpenBelow(folder, path, O_PATH | O_DIRECTORY);
}

FileHandle OpenLink(int folder, const char* name) noexcept
{
    return OpenBelow(folder, name, O_PATH | O_NOFOLLOW);
}

result::Code ReadOpenLink(const FileHandle& link, std::string& target)
{
    char text[PATH_MAX];
    const ssize_t length = Calls().readlinkat(link.Get(), "", text, sizeof(text));
    if (length < 0) {
        return LastError();
    }
    if (length == 0 || static_cast<std::size_t>(length) == sizeof(text)) {
        return result::NameTooLong;
    }
    target.assign(text, static_cast<std::size_t>(length));
    return result::Success;
}

result::Code CreateNameless(int folder, FileHandle& file) noexcept
{
    file = OpenBelow(folder, ".", O_TMPFILE | O_WRONLY, 0600);
    const bool isUnknown = !file && (errno == EOPNOTSUPP || errno == EISDIR);
    return file || isUnknown ? result::Success : LastError();
}

result::Code TryWriteLock(const FileHandle& file) noexcept
{
    struct flock all {};
    all.l_type = F_WRLCK;
    all.l_whence = SEEK_SET;
    if (Retry([&] { return Calls().setlock(file.Get(), &all); }) == 0) {
        return result::Success;
    }
    return errno == EAGAIN || errno == EACCES ? result::FileLocked : LastError();
}

result::Code WaitForLock(const FileHandle& file) noexcept
{
    return Retry([&] { return Calls().flock(file.Get(), LOCK_EX); }) == 0 ? result::Success : LastError();
}

bool FillWithRandomBytes(std::span<unsigned char> bytes) noexcept
{
    const ssize_t count = Retry([&] { return Calls().getrandom(bytes.data(), bytes.size(), 0); });
    return count == static_cast<ssize_t>(bytes.size());
}

void PreferLargePages(void* memory, std::size_t size) noexcept
{
    constexpr std::size_t kLargePage = std::size_t{2} << 20;
    // A virtual machine has few whole blocks at hand. The host provides the others, which costs more than small pages.
    constexpr std::size_t kMost = std::size_t{32} << 20;
    if (size > kMost) {
        return;
    }
    const std::size_t skipped = (kLargePage - reinterpret_cast<std::uintptr_t>(memory) % kLargePage) % kLargePage;
    const std::size_t whole = size < skipped ? 0 : (size - skipped) / kLargePage * kLargePage;
    if (whole != 0) {
        madvise(static_cast<char*>(memory) + skipped, whole, MADV_HUGEPAGE);
    }
}

void DropPendingSignals(const sigset_t& signals) noexcept
{
    constexpr timespec kNoWait{0, 0};
    while (sigtimedwait(&signals, nullptr, &kNoWait) > 0) {
    }
}

}  // namespace zupm::native
