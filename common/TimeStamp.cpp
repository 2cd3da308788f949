#include "common/TimeStamp.h"

#include <atomic>
#include <cstdint>

namespace zupm {

namespace {

constinit std::atomic<Clock> g_clock{nullptr};

void AppendDigits(std::u16string& out, std::uint32_t value, std::uint32_t highest)
{
    for (std::uint32_t place = highest; place != 0; place /= 10) {
        out.push_back(static_cast<char16_t>(u'0' + value / place % 10));
    }
}

}  // namespace

std::u16string cmnblib_CurrentTimeToGMTTimeStamp()
{
    namespace chrono = std::chrono;
    const Clock clock = g_clock.load(std::memory_order_acquire);
    const auto now = chrono::floor<chrono::seconds>(clock == nullptr ? chrono::system_clock::now() : clock());
    const auto day = chrono::floor<chrono::days>(now);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss time(now - day);

    std::u16string stamp;
    stamp.reserve(14);
    AppendDigits(stamp, static_cast<std::uint32_t>(static_cast<int>(date.year())), 1000);
    AppendDigits(stamp, static_cast<unsigned>(date.month()), 10);
    AppendDigits(stamp, static_cast<unsigned>(date.day()), 10);
    AppendDigits(stamp, static_cast<std::uint32_t>(time.hours().count()), 10);
    AppendDigits(stamp, static_cast<std::uint32_t>(time.minutes().count()), 10);
    AppendDigits(stamp, static_cast<std::uint32_t>(time.seconds().count()), 10);
    return stamp;
}

void SetClock(Clock clock) noexcept
{
    g_clock.store(clock, std::memory_order_release);
}

}  // namespace zupm
