/// The owner of one reference to a component object.
#pragma once

#include <cstddef>
#include <utility>

#include "zuPolicyManager/ComBase.h"

namespace zupm {

/// Owns one reference; `Type` is an interface or one of our classes.
template <class Type>
class ComPtr {  // NOLINT(cppcoreguidelines-special-member-functions): one assignment, by value, serves both
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor): stands for an empty owner
    /// Takes a reference of its own.
    explicit ComPtr(Type* object) noexcept : m_object(object)
    {
        if (m_object != nullptr) {
            m_object->AddRef();
        }
    }
    ~ComPtr() { Reset(); }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.m_object) {}
    ComPtr(ComPtr&& other) noexcept : m_object(other.Detach()) {}
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    /// Owns a reference that somebody else took.
    [[nodiscard]] static ComPtr Attach(Type* object) noexcept
    {
        ComPtr owner;
        owner.m_object = object;
        return owner;
    }

    [[nodiscard]] Type* Get() const noexcept { return m_object; }
    Type* operator->() const noexcept { return m_object; }
    Type& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// The slot for a call that hands out a reference; what was held is released first.
    [[nodiscard]] Type** Put() noexcept
    {
        Reset();
        return &m_object;
    }
    [[nodiscard]] void** PutVoid() noexcept { return reinterpret_cast<void**>(Put()); }
    /// Gives the reference to the caller.
    [[nodiscard]] Type* Detach() noexcept { return std::exchange(m_object, nullptr); }
    void Reset() noexcept
    {
        if (Type* const object = Detach(); object != nullptr) {
            object->Release();
        }
    }

    /// Asks the object for another interface; the result of QueryInterface, with `other` empty on failure.
    template <class Other>
    [[nodiscard]] HRESULT Query(REFIID iid, ComPtr<Other>& other) const noexcept
    {
        return m_object->QueryInterface(iid, other.PutVoid());
    }

private:
    Type* m_object = nullptr;
};

}  // namespace zupm
