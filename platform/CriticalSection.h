/// The operating system's recursive lock.
#pragma once

#include <cstddef>

#include "platform/ThreadAnnotations.h"

namespace zupm {

/// A recursive mutex: the thread that holds it may enter again and leaves as often.
///
/// Lifetime  Created free; must be free when destroyed.
/// Errors    None. It allocates nothing.
class ZUPM_CAPABILITY("critical section") CCriticalSection {
public:
    CCriticalSection() noexcept;
    ~CCriticalSection();
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    void Enter() noexcept ZUPM_ACQUIRE();
    void Leave() noexcept ZUPM_RELEASE();

private:
    static constexpr std::size_t kStorageBytes = 40;
    alignas(8) std::byte m_storage[kStorageBytes]{};
};

/// Holds a critical section for a scope.
class ZUPM_SCOPED_CAPABILITY CriticalSectionLock {
public:
    explicit CriticalSectionLock(CCriticalSection& section) noexcept ZUPM_ACQUIRE(section) : m_section(section)
    {
        m_section.Enter();
    }
    ~CriticalSectionLock() ZUPM_RELEASE() { m_section.Leave(); }
    CriticalSectionLock(const CriticalSectionLock&) = delete;
    CriticalSectionLock& operator=(const CriticalSectionLock&) = delete;

private:
    CCriticalSection& m_section;
};

}  // namespace zupm
