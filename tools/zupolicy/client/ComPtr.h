/// Owner of one interface pointer.
#pragma once

#include <utility>

namespace zupm::tool {

/// Holds one reference to an object of the component.
///
/// Lifetime  Destroying it releases the reference.
/// Threads   None of its own.
template <typename Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(ComPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ComPtr& operator=(ComPtr&& other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    ~ComPtr()
    {
        if (m_object != nullptr) {
            m_object->Release();
        }
    }

    /// The slot for a call that hands out a reference; only while nothing is held.
    [[nodiscard]] Interface** Slot() noexcept { return &m_object; }
    [[nodiscard]] void** VoidSlot() noexcept { return reinterpret_cast<void**>(&m_object); }

    [[nodiscard]] Interface* Get() const noexcept { return m_object; }
    Interface* operator->() const noexcept { return m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

private:
    Interface* m_object = nullptr;
};

}  // namespace zupm::tool
