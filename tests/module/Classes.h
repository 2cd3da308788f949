/// The four classes as rows, for tests that hold for each of them.
#pragma once

#include "tests/support/ComPtr.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

struct ClassRow {
    const char* label;
    const CLSID& clsid;
    const IID& iid;
    const OLECHAR* progId;
};

inline constexpr ClassRow kClasses[] = {
    {"TaskInfo", CLSID_TaskInfo, IID_ITaskInfo, kProgIdTaskInfo.c_str()},
    {"PolicyTask", CLSID_PolicyTask, IID_IPolicyTask, kProgIdPolicyTask.c_str()},
    {"PolicyProduct", CLSID_PolicyProduct, IID_IPolicyProduct, kProgIdPolicyProduct.c_str()},
    {"PolicyFile", CLSID_PolicyFile, IID_IPolicyFile, kProgIdPolicyFile.c_str()},
};

/// An object of a row's class, asked for one interface; the out is poisoned first.
[[nodiscard]] inline HRESULT CreateOf(const ClassRow& row, IUnknown* outer, REFIID iid, ComPtr<IUnknown>& object)
{
    void* slot = &object;
    const HRESULT created = CoCreateInstance(row.clsid, outer, CLSCTX_INPROC_SERVER, iid, &slot);
    object = ComPtr<IUnknown>::Attach(static_cast<IUnknown*>(slot));
    return created;
}

}  // namespace zupm::test
