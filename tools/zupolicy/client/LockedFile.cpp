#include "tools/zupolicy/client/LockedFile.h"

#include <thread>

#include "tools/zupolicy/client/Failure.h"

namespace zupm::tool {

void LockedFile::WaitUntilLocked(std::chrono::milliseconds patience)
{
    constexpr std::chrono::milliseconds kPause(20);
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!TryLock()) {
        if (std::chrono::steady_clock::now() >= end) {
            throw Failure(ExitCode::Locked, m_path, "another process is editing it (--lock-timeout)");
        }
        std::this_thread::sleep_for(kPause);
    }
}

void LockedFile::RequireUnchanged(const std::string* expected) const
{
    if (expected != nullptr && (!IsInPlace() || Read() != *expected)) {
        throw Failure(ExitCode::Changed, m_path,
                      "something else changed it in the meantime; it was not overwritten (--force overwrites it)");
    }
}

}  // namespace zupm::tool
