#include "module/ModulePlatform.h"

#include <windows.h>

#include <oleauto.h>

#include "platform/win32/Wide.h"
#include "zuPolicyManager/Owners.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

namespace {

constexpr WORD kMajorVersion = 1;
constexpr WORD kMinorVersion = 0;

HMODULE OwnModule() noexcept
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&OwnModule), &module);
    return module;
}

bool IsTypeLibraryRegistered() noexcept
{
    Bstr path;
    return SUCCEEDED(
        QueryPathOfRegTypeLib(LIBID_ZUPOLICYMANAGERLib, kMajorVersion, kMinorVersion, LOCALE_NEUTRAL, path.Put()));
}

}  // namespace

std::string_view RegistryScriptText(unsigned number) noexcept
{
    const HMODULE module = OwnModule();
    const HRSRC place = FindResourceW(module, MAKEINTRESOURCEW(number), L"REGISTRY");
    if (place == nullptr) {
        return {};
    }
    const HGLOBAL loaded = LoadResource(module, place);
    const auto* const text = static_cast<const char*>(LockResource(loaded));
    return text == nullptr ? std::string_view() : std::string_view(text, SizeofResource(module, place));
}

result::Code RegisterModuleTypeLibrary(const std::u16string& modulePath) noexcept
{
    ComPtr<ITypeLib> library;
    const wchar_t* const path = win32::Wide(modulePath);
    if (const HRESULT loaded = LoadTypeLibEx(path, REGKIND_NONE, library.Put()); FAILED(loaded)) {
        return loaded;
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it takes a changeable text and leaves it alone
    return RegisterTypeLib(library.Get(), const_cast<LPOLESTR>(path), nullptr);
}

result::Code UnregisterModuleTypeLibrary() noexcept
{
    // Unregistering what is not registered is no failure, but the call itself reports one.
    if (!IsTypeLibraryRegistered()) {
        return result::Success;
    }
    return UnRegisterTypeLib(LIBID_ZUPOLICYMANAGERLib, kMajorVersion, kMinorVersion, LOCALE_NEUTRAL, SYS_WIN64);
}

}  // namespace zupm
