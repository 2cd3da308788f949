/// An object that has one of the component's as a part of itself.
#pragma once

#include "tests/support/ComPtr.h"

namespace zupm::fuzz {

/// Hands every interface but IUnknown on to its part. On the heap; goes with its last reference.
class OuterObject final : public IUnknown {
public:
    /// The outer object, or null when the part could not be made.
    [[nodiscard]] static test::ComPtr<IUnknown> Create(REFCLSID partClass)
    {
        auto outer = test::ComPtr<IUnknown>::Attach(new OuterObject);
        return static_cast<OuterObject*>(outer.Get())->MakePart(partClass) == S_OK ? outer : nullptr;
    }

    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        if (!(iid == IID_IUnknown)) {
            return m_part->QueryInterface(iid, out);
        }
        if (out == nullptr) {
            return E_POINTER;
        }
        AddRef();
        *out = static_cast<IUnknown*>(this);
        return S_OK;
    }
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override
    {
        const ULONG left = --m_references;
        if (left == 0) {
            // The part may take and give back references of ours while it goes.
            m_references = 1;
            delete this;
        }
        return left;
    }

private:
    OuterObject() = default;
    ~OuterObject() = default;

    HRESULT MakePart(REFCLSID partClass)
    {
        return CoCreateInstance(partClass, this, CLSCTX_INPROC_SERVER, IID_IUnknown, m_part.PutVoid());
    }

    ULONG m_references = 1;
    test::ComPtr<IUnknown> m_part;
};

}  // namespace zupm::fuzz
