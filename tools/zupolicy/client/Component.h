/// Creates the component's objects: the only place of the tool that differs between the targets.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

namespace zupm::tool {

/// Creates an object of the component by class identifier, whether or not the component is registered.
/// Throws CallError when the component is not there or cannot create the object.
void CreateObject(REFCLSID clsid, REFIID iid, void** out);

template <typename Interface>
[[nodiscard]] ComPtr<Interface> Create(REFCLSID clsid, REFIID iid)
{
    ComPtr<Interface> object;
    CreateObject(clsid, iid, object.PutVoid());
    return object;
}

}  // namespace zupm::tool
