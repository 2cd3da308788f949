#include <windows.h>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/doctor/BinaryHeader.h"
#include "tools/zupolicy/client/doctor/Installation.h"

namespace zupm::tool {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kManifest = L"zuPolicyManager64.RegFree.manifest";

std::string SystemMessage(DWORD error)
{
    wchar_t text[512];
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                       nullptr, error, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
    const std::wstring message(text, length);
    return ToUtf8(std::u16string(message.begin(), message.end())) + "(error " + std::to_string(error) + ")";
}

bool HasFile(const fs::path& path)
{
    std::error_code failed;
    return fs::exists(path, failed);
}

}  // namespace

const char* const kModuleFile = "zuPolicyManager64.dll";
const bool kUsesRegisteredModule = true;

fs::path OwnProgram()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

ModulePlace FindOwnModule()
{
    const fs::path folder = OwnProgram().parent_path();
    return {HasFile(folder / kModuleFile) ? folder / kModuleFile : fs::path(), {folder}};
}

ModuleEntry LoadModule(const fs::path& path)
{
    const HMODULE module = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr) {
        return {nullptr, SystemMessage(GetLastError())};
    }
    // Two steps, because the compiler rightly distrusts a direct cast between function types.
    const auto entry = reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject"));
    return {reinterpret_cast<ModuleEntry::GetClassObject>(entry),
            entry == nullptr ? "it has no function DllGetClassObject" : ""};
}

std::vector<fs::path> ResourceFolders(const fs::path& module)
{
    return {module.parent_path()};
}

std::string ProblemOfResourceModule(const fs::path& path)
{
    if (!ReadBinaryHeader(path)) {
        return "cannot be read, or is no library of this system";
    }
    if (!IsWhole(path)) {
        return "is cut off";
    }
    const HMODULE module =
        LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
    if (module == nullptr) {
        return "does not load: " + SystemMessage(GetLastError());
    }
    std::string problem;
    for (const std::uint32_t text : kResourceTexts) {
        // With no room given, the call hands out the address of the text instead of copying it.
        const wchar_t* found = nullptr;
        if (LoadStringW(module, text, reinterpret_cast<wchar_t*>(&found), 0) <= 0) {
            problem = "has no text " + std::to_string(text);
        }
    }
    FreeLibrary(module);
    return problem;
}

RegisteredClass ReadRegistration(REFCLSID clsid)
{
    wchar_t text[39]{};
    StringFromGUID2(clsid, text, static_cast<int>(std::size(text)));
    const std::wstring key = std::wstring(L"CLSID\\") + text + L"\\InprocServer32";
    std::wstring value(32768, L'\0');
    auto size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    const LSTATUS read =
        RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, value.data(), &size);
    if (read == ERROR_FILE_NOT_FOUND) {
        return {};
    }
    if (read != ERROR_SUCCESS) {
        return {{}, SystemMessage(static_cast<DWORD>(read))};
    }
    value.resize(value.find(L'\0'));
    return {fs::path(value), {}};
}

std::string RegistryName()
{
    return "HKEY_CLASSES_ROOT\\CLSID";
}

std::string HowToRegister(const fs::path& module)
{
    return "regsvr32 \"" + ToUtf8(module.u16string()) + "\" (as administrator)";
}

std::string RegistrationFreeUse(const fs::path& module)
{
    const bool isThere = HasFile(module.parent_path() / kManifest);
    return isThere ? "its manifest lies beside it: programs that name it need no registration"
                   : "no zuPolicyManager64.RegFree.manifest lies beside it: programs need the registration";
}

}  // namespace zupm::tool
