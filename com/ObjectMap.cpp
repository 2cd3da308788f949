#include "com/ObjectMap.h"

#include <algorithm>
#include <new>

namespace zupm {

HRESULT GetClassObject(ObjectMap map, REFCLSID clsid, REFIID iid, void** out) noexcept
{
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    const auto row = std::ranges::find_if(map, [&](const ObjectMapRow& candidate) { return candidate.clsid == clsid; });
    if (row == map.end()) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    const auto factory = ComPtr<IClassFactory>::Attach(new (std::nothrow) ClassFactory(row->creator));
    return factory ? factory->QueryInterface(iid, out) : E_OUTOFMEMORY;
}

}  // namespace zupm
