/// The component in this process: its runtime, and its objects.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

namespace zupm::tool {

/// Creates an object of the component by class identifier, whether or not the component is registered.
/// Throws CallError when the component is not there or cannot create the object.
void CreateObject(REFCLSID clsid, REFIID iid, void** out);

/// Throws CallError for the result of a failed creation, with a hint at what says more.
void CheckCreation(HRESULT result);

template <typename Interface>
[[nodiscard]] ComPtr<Interface> Create(REFCLSID clsid, REFIID iid)
{
    ComPtr<Interface> object;
    CreateObject(clsid, iid, object.PutVoid());
    return object;
}

/// Keeps the component runtime started.
///
/// Lifetime  Outlives every object of the component.
/// Errors    The constructor throws Failure when the runtime cannot be started.
class Runtime {
public:
    Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;
    ~Runtime();
};

}  // namespace zupm::tool
