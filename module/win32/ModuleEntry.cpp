#include <windows.h>

#include "com/Dispatch.h"
#include "module/ModuleServer.h"

namespace __gnu_cxx {
/// The C++ runtime's own clean-up: gives back what it keeps for throwing exceptions when memory has run out.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the runtime's name for it
void __freeres();
}  // namespace __gnu_cxx

extern "C" {

/// Always succeeds. The object map needs no start-up of its own; what calls by name have cached is dropped here for a
/// process that frees the module without asking it first.
BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID processEnds)
{
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(instance);
    } else if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        zupm::ReleaseTypeInformation();
        __gnu_cxx::__freeres();
    }
    return TRUE;
}

HRESULT WINAPI DllCanUnloadNow()
{
    return zupm::ModuleCanUnloadNow();
}

HRESULT WINAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out)
{
    return zupm::ModuleGetClassObject(clsid, iid, out);
}

HRESULT WINAPI DllRegisterServer()
{
    return zupm::ModuleRegister();
}

HRESULT WINAPI DllUnregisterServer()
{
    return zupm::ModuleUnregister();
}

}  // extern "C"
