#include "platform/HeldFile.h"

#include <thread>

namespace zupm {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause(10);

}  // namespace

bool MayPass(result::Code code) noexcept
{
    return code == result::FileLocked || code == result::FileChanged || code == result::SharingViolation;
}

result::Code OpenLocked(std::u16string_view path, std::chrono::milliseconds patience, HeldFile& file) noexcept
{
    const SteadyClock::time_point end = SteadyClock::now() + patience;
    bool wasBusy = false;
    for (;;) {
        // Opened anew each time: whoever had the lock has most likely put a new file in the old one's place.
        result::Code code = file.Open(path);
        if (code == result::Success) {
            code = file.TryLock();
        }
        // A name that is missing while somebody edits the file may be about to get the new one.
        if (!MayPass(code) && !(wasBusy && code == result::FileNotFound)) {
            return code;
        }
        wasBusy = true;
        file.Close();
        if (SteadyClock::now() >= end) {
            return code == result::FileChanged ? result::FileLocked : code;
        }
        std::this_thread::sleep_for(kPause);
    }
}

}  // namespace zupm
