#include "policyfile/EditedFile.h"

#include <thread>

namespace zupm {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause(10);

/// Whether another moment may bring another answer: somebody edits the file, keeps writers out, or has just replaced
/// it.
bool MayPass(result::Code code)
{
    return code == result::FileLocked || code == result::FileChanged || code == result::SharingViolation;
}

}  // namespace

result::Code EditedFile::Open(std::u16string_view path, std::chrono::milliseconds patience)
{
    Close();
    result::Code code = OpenLocked(path, patience);
    if (code == result::Success) {
        code = m_file.Read(m_bytes);
    }
    if (code != result::Success) {
        Close();
    }
    return code;
}

result::Code EditedFile::OpenLocked(std::u16string_view path, std::chrono::milliseconds patience)
{
    const Clock::time_point end = Clock::now() + patience;
    for (;;) {
        // Opened anew each time: whoever had the lock has most likely put a new file in the old one's place.
        result::Code code = m_file.Open(path);
        if (code == result::Success) {
            code = m_file.TryLock();
        }
        if (!MayPass(code)) {
            return code;
        }
        if (Clock::now() >= end) {
            return code == result::FileChanged ? result::FileLocked : code;
        }
        m_file.Close();
        std::this_thread::sleep_for(kPause);
    }
}

void EditedFile::Close() noexcept
{
    m_file.Close();
    m_bytes = std::string();
}

result::Code EditedFile::Rehearse(bool force) noexcept
{
    const result::Code code = force ? result::Success : CheckUnchanged();
    return code == result::Success ? m_file.RehearseReplace() : code;
}

result::Code EditedFile::Commit(std::string_view bytes, bool force) noexcept
{
    const result::Code code = m_file.Replace(bytes, force ? nullptr : &m_bytes);
    if (code == result::Success || code == result::WrittenNotFlushed) {
        Close();
    }
    return code;
}

}  // namespace zupm
