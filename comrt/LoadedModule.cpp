#include "comrt/LoadedModule.h"

#include <dlfcn.h>

namespace zupm::runtime {

HRESULT LoadedModule::Load(const std::string& path, std::shared_ptr<const LoadedModule>& module)
{
    module.reset();
    // A path that is not absolute would be searched for in folders that others may write to.
    if (!path.starts_with('/')) {
        return CO_E_DLLNOTFOUND;
    }
    // Owner first, so that nothing that fails later leaves the module loaded.
    const std::shared_ptr<LoadedModule> loaded(new LoadedModule(path, nullptr));
    loaded->m_handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (loaded->m_handle == nullptr) {
        return CO_E_DLLNOTFOUND;
    }
    loaded->m_getClassObject = reinterpret_cast<ZuGetClassObject>(::dlsym(loaded->m_handle, "DllGetClassObject"));
    loaded->m_canUnload = reinterpret_cast<CanUnload>(::dlsym(loaded->m_handle, "DllCanUnloadNow"));
    if (loaded->m_getClassObject == nullptr) {
        return CO_E_ERRORINDLL;
    }
    loaded->m_base = BaseOf(loaded->m_getClassObject);
    module = loaded;
    return S_OK;
}

LoadedModule::~LoadedModule()
{
    if (m_handle != nullptr) {
        ::dlclose(m_handle);
    }
}

bool LoadedModule::CanUnloadNow() const
{
    return m_canUnload != nullptr && m_canUnload() == S_OK;
}

const void* BaseOf(ZuGetClassObject function) noexcept
{
    Dl_info info{};
    return ::dladdr(reinterpret_cast<const void*>(function), &info) != 0 ? info.dli_fbase : nullptr;
}

}  // namespace zupm::runtime
