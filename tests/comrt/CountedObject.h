/// Objects whose references a test can count.
#pragma once

#include <atomic>

#include "zuPolicyManager/zucomrt.h"

namespace zupm::test {

/// An object with IUnknown alone; lives where the test puts it.
struct CountedObject final : IUnknown {
    std::atomic<ULONG> references{1};

    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        *out = iid == IID_IUnknown ? this : nullptr;
        if (*out == nullptr) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++references; }
    ULONG Release() override { return --references; }
};

}  // namespace zupm::test
