#include "module/ModuleServer.h"
#include "module/native/AnnounceClasses.h"

namespace {

// Loading always succeeds: without the announcement the classes can still be reached through the registry.
[[gnu::constructor]] void Attach() noexcept
{
    static_cast<void>(zupm::AnnounceClasses());
}

[[gnu::destructor]] void Detach() noexcept
{
    zupm::WithdrawClasses();
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

HRESULT DllCanUnloadNow() noexcept
{
    return zupm::ModuleCanUnloadNow();
}

HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept
{
    return zupm::ModuleGetClassObject(clsid, iid, out);
}

HRESULT DllRegisterServer() noexcept
{
    return zupm::ModuleRegister();
}

HRESULT DllUnregisterServer() noexcept
{
    return zupm::ModuleUnregister();
}

}  // extern "C"
#pragma GCC visibility pop
