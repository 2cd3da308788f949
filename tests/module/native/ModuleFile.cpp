#include "tests/module/native/ModuleFile.h"

#include <dlfcn.h>

#include <stdexcept>

#include "platform/Modules.h"

namespace zupm::test {

std::filesystem::path ModulePath()
{
    return std::filesystem::path(OwnModuleFolder()) / "libzuPolicyManager64.so";
}

ModuleFile::ModuleFile(const std::filesystem::path& path) : m_handle(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (m_handle == nullptr) {
        throw std::runtime_error(::dlerror());
    }
}

ModuleFile::~ModuleFile()
{
    ::dlclose(m_handle);
}

HRESULT ModuleFile::Call(const char* entryPoint) const
{
    const auto function = reinterpret_cast<HRESULT (*)()>(::dlsym(m_handle, entryPoint));
    return function == nullptr ? E_NOTIMPL : function();
}

HRESULT ModuleFile::GetClassObject(REFCLSID clsid, REFIID iid, void** out) const
{
    const auto function = reinterpret_cast<ZuGetClassObject>(::dlsym(m_handle, "DllGetClassObject"));
    return function == nullptr ? E_NOTIMPL : function(clsid, iid, out);
}

OwnRegistry::OwnRegistry()
{
    ::setenv("ZUREGISTRY", (m_folder.Folder() / "registry").c_str(), 1);
}

OwnRegistry::~OwnRegistry()
{
    ::unsetenv("ZUREGISTRY");
}

std::string OwnRegistry::Text() const
{
    return m_folder.Has(u"registry") ? m_folder.Read(u"registry") : std::string();
}

std::string OwnRegistry::Value(std::u16string_view key, std::u16string_view name)
{
    const Bstr keyText(key);
    const Bstr nameText(name);
    Bstr value;
    const HRESULT read = ZuRegistryGetValue(keyText.Get(), name.empty() ? nullptr : nameText.Get(), value.Slot());
    return read == S_OK ? Utf8(value.Text()) : "(none)";
}

}  // namespace zupm::test
