/// A clock that moves only when the test moves it.
#pragma once

#include <chrono>
#include <string>

namespace zupm::test {

/// The component's clock, from its construction to its destruction. One at a time. It starts at
/// 2026-01-02 03:04:05 GMT, of which the stamp is kFirstStamp.
class FixedClock {
public:
    static constexpr const char16_t* kFirstStamp = u"20260102030405";

    FixedClock();
    ~FixedClock();
    FixedClock(const FixedClock&) = delete;
    FixedClock& operator=(const FixedClock&) = delete;

    /// Moves it on (or back).
    void Advance(std::chrono::seconds by);
    void Set(std::chrono::sys_seconds time);
    /// The stamp of its time.
    [[nodiscard]] std::u16string Stamp() const;
};

}  // namespace zupm::test
