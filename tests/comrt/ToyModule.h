/// What the modules that tests load have in common: one class each, counted as real modules count.
#pragma once

#include <atomic>

#include "zuPolicyManager/zucomrt.h"

namespace zupm::test {

inline constexpr CLSID kQuietClass{0x5E0E0001, 0x0001, 0x4001, {0x80, 0, 0, 0, 0, 0, 0, 1}};
inline constexpr CLSID kAnnouncedClass{0x5E0E0002, 0x0002, 0x4002, {0x80, 0, 0, 0, 0, 0, 0, 2}};

/// Objects and server locks of this module.
inline constinit std::atomic<int> g_inUse{0};

/// An object of a toy module's class.
class ToyObject final : public IUnknown {
public:
    ToyObject() { ++g_inUse; }
    ToyObject(const ToyObject&) = delete;
    ToyObject& operator=(const ToyObject&) = delete;

    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        if (iid != IID_IUnknown) {
            // Left unchanged on purpose: the runtime must clear it.
            return E_NOINTERFACE;
        }
        *out = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override
    {
        const ULONG left = --m_references;
        if (left == 0) {
            delete this;
        }
        return left;
    }

private:
    ~ToyObject() { --g_inUse; }

    std::atomic<ULONG> m_references{1};
};

/// A toy module's one class object; it does not count itself, as that of a real module need not.
class ToyFactory final : public IClassFactory {
public:
    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        if (iid != IID_IUnknown && iid != IID_IClassFactory) {
            return E_NOINTERFACE;
        }
        *out = static_cast<IClassFactory*>(this);
        return S_OK;
    }
    ULONG AddRef() override { return 2; }
    ULONG Release() override { return 1; }
    HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** out) override
    {
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        // Nothing counts for this module yet, but it is being called: this must not unload it.
        CoFreeUnusedLibraries();
        auto* object = new ToyObject;
        const HRESULT queried = object->QueryInterface(iid, out);
        object->Release();
        return queried;
    }
    HRESULT LockServer(BOOL lock) override
    {
        g_inUse += lock != 0 ? 1 : -1;
        return S_OK;
    }
};

inline constinit ToyFactory g_factory;

inline HRESULT ToyClassObject(const CLSID& own, REFCLSID asked, REFIID iid, void** out)
{
    return asked == own ? g_factory.QueryInterface(iid, out) : CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace zupm::test

extern "C" {
#pragma GCC visibility push(default)
HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** out);
HRESULT DllCanUnloadNow();
#pragma GCC visibility pop
}
