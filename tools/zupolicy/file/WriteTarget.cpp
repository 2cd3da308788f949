#include "file/WriteTarget.h"

#include <algorithm>
#include <system_error>
#include <thread>

#include "Failure.h"
#include "file/FileBytes.h"
#include "text/Utf8.h"

namespace zupm::tool {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause(10);

/// The file at the end of all links: whatever name it is edited under, there is one lock.
fs::path RealPath(const fs::path& path)
{
    std::error_code error;
    const fs::path real = fs::weakly_canonical(path, error);
    return error || real.empty() ? path : real;
}

/// Whether a lock file has a place beside it: not beside a device, which is written, too, nor in a folder that is not
/// there, which is the component's to tell.
bool CanBeLocked(const fs::path& path)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    const bool isPlain = fs::is_regular_file(status) || status.type() == fs::file_type::not_found;
    return isPlain && path.has_filename() && fs::is_directory(fs::absolute(path, ignored).parent_path(), ignored);
}

std::string HolderText(const LockFile& lock)
{
    const std::uint64_t holder = lock.Holder();
    return holder == 0 ? "another process" : "process " + std::to_string(holder);
}

}  // namespace

WriteTarget::WriteTarget(const std::string& path, std::chrono::milliseconds patience)
    : m_path(path), m_file(RealPath(fs::path(FromUtf8(path))))
{
    if (!CanBeLocked(m_file)) {
        return;
    }
    fs::path lockFile = m_file;
    lockFile += ".lock";
    Lock(lockFile, patience);
    m_before = BytesOf(m_file);
}

void WriteTarget::Lock(const fs::path& lockFile, std::chrono::milliseconds patience)
{
    const Clock::time_point end = Clock::now() + patience;
    try {
        m_lock.emplace(lockFile, m_file);
        while (!m_lock->TryLock()) {
            if (Clock::now() >= end) {
                throw Failure(ExitCode::Locked,
                              m_path + ": " + HolderText(*m_lock) + " is editing it; gave up after " +
                                  std::to_string(std::chrono::duration_cast<std::chrono::seconds>(patience).count()) +
                                  " s (--lock-timeout)");
            }
            std::this_thread::sleep_for(kPause);
        }
    } catch (const std::system_error& error) {
        throw Failure(ExitCode::FileError, m_path + ": its lock file " + ToUtf8(lockFile.u16string()) +
                                               " cannot be used: " + error.code().message());
    }
}

void WriteTarget::RequireUnchanged() const
{
    if (m_lock && BytesOf(m_file) != m_before) {
        throw Failure(ExitCode::Changed,
                      m_path + ": was changed by something else meanwhile and is left alone (--force writes it)");
    }
}

}  // namespace zupm::tool
