#include "platform/HeldFile.h"

#include <thread>

namespace zupm {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause(10);

/// Whether another moment may bring another answer.
bool MayPass(result::Code code)
{
    return code == result::FileLocked || code == result::FileChanged || code == result::SharingViolation;
}

}  // namespace

result::Code OpenLocked(std::u16string_view path, std::chrono::milliseconds patience, HeldFile& file) noexcept
{
    const SteadyClock::time_point end = SteadyClock::now() + patience;
    for (;;) {
        // Opened anew each time: whoever had the lock has most likely put a new file in the old one's place.
        result::Code code = file.Open(path);
        if (code == result::Success) {
            code = file.TryLock();
        }
        if (!MayPass(code)) {
            return code;
        }
        file.Close();
        if (SteadyClock::now() >= end) {
            return code == result::FileChanged ? result::FileLocked : code;
        }
        std::this_thread::sleep_for(kPause);
    }
}

}  // namespace zupm
