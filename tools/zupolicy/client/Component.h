/// The making of the component's objects.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

namespace zupm::tool {

inline constexpr const char* kDoctorHint = "zupolicy doctor says more";

/// Creates an object of the component by class identifier, whether or not the component is registered.
/// Throws ProblemFailure when the component is not there or cannot create the object.
void CreateObject(REFCLSID clsid, REFIID iid, void** out);

/// Throws ProblemFailure for the result of a failed creation, with a hint at what says more.
void CheckCreation(HRESULT result);

/// A new object of the class that implements an interface.
template <typename Interface>
[[nodiscard]] ComPtr<Interface> Create()
{
    ComPtr<Interface> object;
    CreateObject(InterfaceTraits<Interface>::Class(), InterfaceTraits<Interface>::Id(), object.PutVoid());
    return object;
}

}  // namespace zupm::tool
