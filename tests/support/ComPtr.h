/// The making of objects, as a client does it.
#pragma once

#include <stdexcept>
#include <string>

#include "zuPolicyManager/Owners.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

using zupm::ComPtr;

/// Creates an object of the class that implements an interface; the caller checks the result.
template <class Interface>
[[nodiscard]] HRESULT TryCreate(ComPtr<Interface>& object)
{
    return CoCreateInstance(InterfaceTraits<Interface>::Class(), nullptr, CLSCTX_INPROC_SERVER,
                            InterfaceTraits<Interface>::Id(), object.PutVoid());
}

/// Creates an object that a test needs in order to go on.
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
