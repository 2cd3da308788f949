#include "Installed.h"

#include <windows.h>

#include <stdexcept>

#include "Schema.h"

namespace zupm::test {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kClassesKey = L"Software\\Classes\\CLSID\\";

void Expect(bool isTrue, const char* what)
{
    if (!isTrue) {
        throw std::runtime_error(what);
    }
}

/// Calls a function of a module that takes no arguments.
HRESULT CallEntry(const fs::path& path, const char* name)
{
    const HMODULE module = LoadLibraryW(path.c_str());
    Expect(module != nullptr, "the module cannot be loaded");
    const auto address = reinterpret_cast<void*>(GetProcAddress(module, name));
    const HRESULT result = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)()>(address)();
    FreeLibrary(module);
    return result;
}

std::wstring KeyOf(const char* clsid)
{
    return kClassesKey + fs::path(clsid).wstring();
}

}  // namespace

const char* const kToolName = "zupolicy.exe";
const char* const kModuleFileName = "zuPolicyManager64.dll";
// A DOS header that says where the next one is, and the beginning of that one: for an 80386.
const std::string kHeaderOf32Bits = [] {
    std::string header(128, '\0');
    header.replace(0, 2, "MZ");
    header[0x3C] = 64;
    header.replace(64, 2, "PE");
    header[68] = 0x4C;
    header[69] = 0x01;
    return header;
}();

Installed::Installed()
{
    const fs::path build = fs::path(ZUPM_TOOL).parent_path();
    for (const char* const file : {kToolName, kModuleFileName, "AgentRes.dll"}) {
        fs::copy_file(build / file, Folder() / file);
    }
}

Installed::~Installed()
{
    // The copy may be damaged, so the original removes the keys.
    CallEntry(fs::path(ZUPM_TOOL).parent_path() / kModuleFileName, "DllUnregisterServer");
}

ToolRun Installed::Tool(const std::vector<std::string>& arguments) const
{
    ToolRun run = RunChild({Folder() / kToolName, Folder(), {}}, arguments);
    ExpectJsonOf(arguments, run);
    return run;
}

void Installed::Register() const
{
    Expect(CallEntry(Module(), "DllRegisterServer") >= 0, "the module does not register");
}

void Installed::SetRegistered(const char* clsid, const fs::path& module) const
{
    if (module.empty()) {
        Expect(RegDeleteTreeW(HKEY_LOCAL_MACHINE, KeyOf(clsid).c_str()) == ERROR_SUCCESS, "the key is not removed");
        return;
    }
    const std::wstring text = module.wstring();
    const std::wstring key = KeyOf(clsid) + L"\\InprocServer32";
    Expect(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), nullptr, REG_SZ, text.c_str(),
                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS,
           "the value is not written");
}

}  // namespace zupm::test
