/// An object that others are parts of.
#pragma once

#include <atomic>

#include "tests/support/ComPtr.h"

namespace zupm::test {

/// The outer object of an aggregate: it answers for IUnknown and passes every other question on to its inner object. It
/// lives where a test puts it, so its count only shows what others did with it.
class OuterObject : public IUnknown {
public:
    OuterObject() = default;
    virtual ~OuterObject() = default;
    OuterObject(const OuterObject&) = delete;
    OuterObject& operator=(const OuterObject&) = delete;

    std::atomic<ULONG> references = 1;
    ComPtr<IUnknown> inner;

    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        if (iid == IID_IUnknown) {
            *out = static_cast<IUnknown*>(this);
            AddRef();
            return S_OK;
        }
        *out = nullptr;
        return inner ? inner->QueryInterface(iid, out) : E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++references; }
    ULONG Release() override { return --references; }
};

}  // namespace zupm::test
