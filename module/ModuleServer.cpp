#include "module/ModuleServer.h"

#include <new>
#include <string>

#include "com/Dispatch.h"
#include "com/ModuleLock.h"
#include "module/ModuleObjects.h"
#include "module/ModulePlatform.h"
#include "module/RegistryScript.h"
#include "platform/Modules.h"

namespace zupm {

namespace {

result::Code RegisterAt(const std::u16string& modulePath) noexcept
{
    for (const ObjectMapRow& row : kModuleObjects) {
        const std::string_view script = RegistryScriptText(row.script);
        if (const result::Code code = RunRegistryScript(script, ScriptMode::Register, modulePath); code < 0) {
            return code;
        }
    }
    return RegisterModuleTypeLibrary(modulePath);
}

}  // namespace

HRESULT ModuleCanUnloadNow() noexcept
{
    if (IsModuleLocked()) {
        return S_FALSE;
    }
    ReleaseTypeInformation();
    return S_OK;
}

HRESULT ModuleGetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept
{
    return GetClassObject(kModuleObjects, clsid, iid, out);
}

HRESULT ModuleRegister() noexcept
{
    try {
        const std::u16string modulePath = OwnModulePath();
        return modulePath.empty() ? result::GeneralFailure : RegisterAt(modulePath);
    } catch (...) {
        // Nothing but the path allocates here.
        return result::OutOfMemory;
    }
}

HRESULT ModuleUnregister() noexcept
{
    result::Code first = result::Success;
    for (const ObjectMapRow& row : kModuleObjects) {
        const std::string_view script = RegistryScriptText(row.script);
        const result::Code code = RunRegistryScript(script, ScriptMode::Unregister, {});
        first = first < 0 ? first : code;
    }
    const result::Code code = UnregisterModuleTypeLibrary();
    return first < 0 ? first : code;
}

}  // namespace zupm
