/// A shared pointer that several threads may read and replace.
#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

namespace zupm {

/// One std::shared_ptr that may be loaded, stored and exchanged by any thread without another lock.
///
/// Threads     Every method may be called from any thread. A spin bit guards the copy of the pointer, never what it
///             points at, and is held for a few instructions; objects are released after it was let go.
/// Errors      None.
/// Invariants  Constant-initialised. What std::atomic<std::shared_ptr> is for; the one of libstdc++ 12 lets its own
///             spin bit go with relaxed order after a load, so a load races with the next store (the thread sanitizer
///             reports it, rightly).
template <class Type>
class AtomicShared {
public:
    constexpr AtomicShared() noexcept = default;
    explicit AtomicShared(std::shared_ptr<Type> value) noexcept : m_value(std::move(value)) {}
    ~AtomicShared() = default;
    AtomicShared(const AtomicShared&) = delete;
    AtomicShared& operator=(const AtomicShared&) = delete;

    [[nodiscard]] std::shared_ptr<Type> Load() const noexcept
    {
        Enter();
        std::shared_ptr<Type> value = m_value;
        Leave();
        return value;
    }

    [[nodiscard]] std::shared_ptr<Type> Exchange(std::shared_ptr<Type> value) noexcept
    {
        Enter();
        m_value.swap(value);
        Leave();
        return value;
    }

    void Store(std::shared_ptr<Type> value) noexcept { static_cast<void>(Exchange(std::move(value))); }

private:
    void Enter() const noexcept
    {
        while (m_busy.exchange(true, std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }
    void Leave() const noexcept { m_busy.store(false, std::memory_order_release); }

    mutable std::atomic<bool> m_busy = false;
    std::shared_ptr<Type> m_value;
};

}  // namespace zupm
