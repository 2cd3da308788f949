/// Interface pointers as a client owns them, and the making of objects.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// Identifiers that go with an interface.
template <class Interface>
struct InterfaceTraits;
template <>
struct InterfaceTraits<IUnknown> {
    static const IID& Id() { return IID_IUnknown; }
};
template <>
struct InterfaceTraits<IDispatch> {
    static const IID& Id() { return IID_IDispatch; }
};
template <>
struct InterfaceTraits<IClassFactory> {
    static const IID& Id() { return IID_IClassFactory; }
};
template <>
struct InterfaceTraits<ISupportErrorInfo> {
    static const IID& Id() { return IID_ISupportErrorInfo; }
};
template <>
struct InterfaceTraits<ITaskInfo> {
    static const IID& Id() { return IID_ITaskInfo; }
    static const CLSID& Class() { return CLSID_TaskInfo; }
};
template <>
struct InterfaceTraits<IPolicyTask> {
    static const IID& Id() { return IID_IPolicyTask; }
    static const CLSID& Class() { return CLSID_PolicyTask; }
};
template <>
struct InterfaceTraits<IPolicyProduct> {
    static const IID& Id() { return IID_IPolicyProduct; }
    static const CLSID& Class() { return CLSID_PolicyProduct; }
};
template <>
struct InterfaceTraits<IPolicyFile> {
    static const IID& Id() { return IID_IPolicyFile; }
    static const CLSID& Class() { return CLSID_PolicyFile; }
};

template <>
struct InterfaceTraits<IPolicyFileEdit> {
    static const IID& Id() { return IID_IPolicyFileEdit; }
};

/// One reference to an object.
template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}  // NOLINT(google-explicit-constructor)
    /// Takes a reference of its own.
    explicit ComPtr(Interface* object) : m_object(object)
    {
        if (m_object != nullptr) {
            m_object->AddRef();
        }
    }
    ComPtr(const ComPtr& other) : ComPtr(other.m_object) {}
    ComPtr(ComPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ComPtr() { Reset(); }

    /// Takes a reference over from the caller.
    [[nodiscard]] static ComPtr Attach(Interface* object)
    {
        ComPtr owner;
        owner.m_object = object;
        return owner;
    }

    void Reset()
    {
        if (Interface* last = std::exchange(m_object, nullptr)) {
            last->Release();
        }
    }
    /// The emptied slot, for calls that store a reference into it.
    [[nodiscard]] Interface** Put()
    {
        Reset();
        return &m_object;
    }
    [[nodiscard]] void** PutVoid() { return reinterpret_cast<void**>(Put()); }

    /// Another interface of the object; null when it has none.
    template <class Other>
    [[nodiscard]] ComPtr<Other> Query() const
    {
        ComPtr<Other> other;
        if (m_object != nullptr) {
            static_cast<void>(m_object->QueryInterface(InterfaceTraits<Other>::Id(), other.PutVoid()));
        }
        return other;
    }

    [[nodiscard]] Interface* Get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    Interface* m_object = nullptr;
};

/// Creates an object of the class behind an interface; the result is the caller's to check.
template <class Interface>
[[nodiscard]] HRESULT TryCreate(ComPtr<Interface>& object)
{
    return CoCreateInstance(InterfaceTraits<Interface>::Class(), nullptr, CLSCTX_INPROC_SERVER,
                            InterfaceTraits<Interface>::Id(), object.PutVoid());
}

/// Creates an object that a test cannot go on without.
template <class Interface>
[[nodiscard]] ComPtr<Interface> Create()
{
    ComPtr<Interface> object;
    if (const HRESULT created = TryCreate(object); created != S_OK || !object) {
        throw std::runtime_error("creation failed with " + std::to_string(created));
    }
    return object;
}

}  // namespace zupm::test
