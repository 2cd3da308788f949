/// Which critical sections a thread enters: the linker sends the component's calls of Enter and Leave here first
/// (`-Wl,--wrap`), so nothing of this is in what ships.
#pragma once

#include <vector>

namespace zupm {
class CCriticalSection;
}

namespace zupm::test {

/// A critical section that was entered, with those that the thread held at that moment, outermost first. Entering a
/// section again that is already held is no entry.
struct LockEntry {
    const CCriticalSection* section;
    std::vector<const CCriticalSection*> held;
};

/// Records what the calling thread enters, from its construction to its destruction. One at a time on a thread.
class LockUse {
public:
    LockUse();
    ~LockUse();
    LockUse(const LockUse&) = delete;
    LockUse& operator=(const LockUse&) = delete;

    [[nodiscard]] const std::vector<LockEntry>& Entries() const;
    /// Whether a section was entered.
    [[nodiscard]] bool Entered(const CCriticalSection* section) const;
};

/// Whether the calling thread holds a section now.
[[nodiscard]] bool IsHeld(const CCriticalSection* section);

}  // namespace zupm::test
