/// The runtime's own lock: needs no construction at run time, because modules announce themselves while they load.
#pragma once

#include <mutex>

#include "platform/ThreadAnnotations.h"

namespace zupm::runtime {

/// A plain mutex that clang's thread-safety analysis knows.
class ZUPM_CAPABILITY("mutex") Lock {
public:
    void Enter() ZUPM_ACQUIRE() { m_mutex.lock(); }
    void Leave() ZUPM_RELEASE() { m_mutex.unlock(); }

private:
    std::mutex m_mutex;
};

/// Holds a lock for a scope.
class ZUPM_SCOPED_CAPABILITY ScopedLock {
public:
    explicit ScopedLock(Lock& lock) ZUPM_ACQUIRE(lock) : m_lock(lock) { m_lock.Enter(); }
    ~ScopedLock() ZUPM_RELEASE() { m_lock.Leave(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    Lock& m_lock;
};

}  // namespace zupm::runtime
