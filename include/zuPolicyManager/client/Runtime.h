/// The component's runtime, and the making of its objects.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/client/Error.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <string>

namespace zupm {

/// Keeps the component runtime started for the thread that makes it.
///
/// Lifetime  Must outlive every object of the component, and ends on the thread that made it. On Windows the end of the
///           last one unloads the component, and an object that still lives then must not be touched, nor destroyed.
///           Natively nothing is started or ended, so such an object stays usable.
/// Threads   One for each thread that uses the component. A Windows thread that belongs to a single-threaded apartment
///           already keeps it.
/// Errors    The constructor throws Error.
class Runtime {
public:
    Runtime()
    {
        // The thread has an apartment of the other kind: the component works in that as well.
        constexpr auto kChangedMode = static_cast<HRESULT>(0x80010106u);
        const HRESULT result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        m_started = result >= 0;
        if (!m_started && result != kChangedMode) {
            client::ThrowCode(static_cast<result::Code>(result), "the component runtime");
        }
    }
    ~Runtime()
    {
        if (m_started) {
            CoUninitialize();
        }
    }
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

private:
    bool m_started = false;
};

namespace client {

/// A new object of the class that implements an interface. Throws Error.
template <class Interface>
[[nodiscard]] ComPtr<Interface> Create()
{
    ComPtr<Interface> object;
    const HRESULT result = CoCreateInstance(InterfaceTraits<Interface>::Class(), nullptr, CLSCTX_INPROC_SERVER,
                                            InterfaceTraits<Interface>::Id(), object.PutVoid());
    if (result < 0) {
        ThrowCode(static_cast<result::Code>(result), "the component zuPolicyManager64");
    }
    return object;
}

/// An object that was moved from, or an empty interface.
[[noreturn]] inline void ThrowEmpty()
{
    Throw({result::NotInitialised, {}, "The object is empty: it was moved from.", {}});
}

/// Another interface of an object. Throws Error: an older component lacks the newer interfaces.
template <class Interface, class From>
[[nodiscard]] ComPtr<Interface> Require(const ComPtr<From>& object)
{
    if (!object) {
        ThrowEmpty();
    }
    ComPtr<Interface> wanted;
    const HRESULT result = object->QueryInterface(InterfaceTraits<Interface>::Id(), wanted.PutVoid());
    if (result < 0) {
        ThrowCode(static_cast<result::Code>(result), "the component zuPolicyManager64");
    }
    return wanted;
}

}  // namespace client
}  // namespace zupm
