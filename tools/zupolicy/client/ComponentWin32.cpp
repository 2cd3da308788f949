#include <windows.h>

#include <string>

#include "tools/zupolicy/client/Component.h"

namespace zupm::tool {
namespace {

using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);

/// Full path of the component beside this program; empty when the system does not report where the program is.
std::wstring ModuleBesideProgram()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    const std::size_t slash = path.rfind(L'\\');
    return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash + 1) + L"zuPolicyManager64.dll";
}

GetClassObject FindEntry()
{
    const std::wstring path = ModuleBesideProgram();
    const HMODULE module =
        path.empty() ? nullptr : LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr) {
        return nullptr;
    }
    // Two steps, because the compiler rightly distrusts a direct cast between function types.
    const auto entry = reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject"));
    return reinterpret_cast<GetClassObject>(entry);
}

HRESULT CreateThrough(GetClassObject entry, REFCLSID clsid, REFIID iid, void** out)
{
    ComPtr<IClassFactory> factory;
    const HRESULT result = entry(clsid, IID_IClassFactory, factory.PutVoid());
    return result < 0 ? result : factory->CreateInstance(nullptr, iid, out);
}

}  // namespace

// The component beside the program is preferred to the registered one, so an unpacked folder needs no registration.
void CreateObject(REFCLSID clsid, REFIID iid, void** out)
{
    const GetClassObject entry = FindEntry();
    const HRESULT result = entry != nullptr ? CreateThrough(entry, clsid, iid, out)
                                            : CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, out);
    CheckCreation(result);
}

}  // namespace zupm::tool
