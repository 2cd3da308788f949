#include "tests/planting/Target.h"

#include <windows.h>

namespace zupm::test {

const char* const kComponentName = "zuPolicyManager64.dll";
const char* const kSearchPathVariable = "PATH";
const bool kLibrariesHaveTexts = true;
const bool kLogsAreWritten = false;

void SetVariable(const std::string& name, const std::filesystem::path& value)
{
    SetEnvironmentVariableW(std::filesystem::path(name).c_str(), value.c_str());
}

std::filesystem::path Variable(const std::string& name)
{
    std::wstring value(32768, L'\0');
    const DWORD length =
        GetEnvironmentVariableW(std::filesystem::path(name).c_str(), value.data(), static_cast<DWORD>(value.size()));
    value.resize(length);
    return value;
}

GetClassObject LoadComponent(const std::filesystem::path& path)
{
    const HMODULE module = LoadLibraryW(path.c_str());
    void* const entry =
        module == nullptr ? nullptr : reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject"));
    return reinterpret_cast<GetClassObject>(entry);
}

}  // namespace zupm::test
