#include "tests/support/FixedClock.h"

#include <atomic>

#include "common/TimeStamp.h"

namespace zupm::test {

namespace {

using std::chrono::sys_days;
using std::chrono::system_clock;

constinit std::atomic<std::chrono::seconds::rep> g_now{0};

system_clock::time_point Now()
{
    return system_clock::time_point(std::chrono::seconds(g_now.load()));
}

}  // namespace

FixedClock::FixedClock()
{
    using namespace std::chrono_literals;
    Set(sys_days(std::chrono::January / 2 / 2026) + 3h + 4min + 5s);
    SetClock(&Now);
}

FixedClock::~FixedClock()
{
    SetClock(nullptr);
}

void FixedClock::Advance(std::chrono::seconds by)
{
    g_now += by.count();
}

void FixedClock::Set(std::chrono::sys_seconds time)
{
    g_now = time.time_since_epoch().count();
}

std::u16string FixedClock::Stamp() const
{
    return cmnblib_CurrentTimeToGMTTimeStamp();
}

}  // namespace zupm::test
