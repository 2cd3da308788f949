// In this program nothing waits for the disk: it writes files by the thousand and loses no power.
#include "platform/posix/SystemCalls.h"

namespace zupm::test {

namespace {

native::SystemCalls CallsWithoutFlush()
{
    native::SystemCalls calls = native::kSystemCalls;
    calls.fsync = [](int) { return 0; };
    return calls;
}

/// From before main on.
struct NoFlushes {
    NoFlushes() { native::ReplaceSystemCalls(&calls); }

    const native::SystemCalls calls = CallsWithoutFlush();
};

const NoFlushes g_noFlushes;

}  // namespace

}  // namespace zupm::test
