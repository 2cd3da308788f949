#include "Installed.h"

#include <dlfcn.h>

#include <cstdlib>
#include <stdexcept>

#include "Schema.h"
#include "tests/support/Bstr.h"

namespace zupm::test {
namespace {

namespace fs = std::filesystem;

std::u16string KeyOf(const char* clsid)
{
    const std::string_view text = clsid;
    return u"CLSID\\" + std::u16string(text.begin(), text.end());
}

void Expect(HRESULT result, const char* what)
{
    if (result < 0) {
        throw std::runtime_error(what);
    }
}

}  // namespace

const char* const kToolName = "zupolicy";
const char* const kModuleFileName = "libzuPolicyManager64.so";
// Class 32, low byte first, version 1; a shared object for an 80386.
const std::string kHeaderOf32Bits = [] {
    std::string header(64, '\0');
    header.replace(0, 7,
                   "\x7F"
                   "ELF\x01\x01\x01");
    header[16] = 3;
    header[18] = 3;
    return header;
}();

Installed::Installed()
{
    const fs::path build = fs::path(ZUPM_TOOL).parent_path();
    for (const char* const file : {kToolName, kModuleFileName, "libzucomrt.so.1", "AgentRes.dll"}) {
        fs::copy_file(build / file, Folder() / file);
    }
    setenv("ZUREGISTRY", RegistryFile().c_str(), 1);
}

Installed::~Installed()
{
    unsetenv("ZUREGISTRY");
}

ToolRun Installed::Tool(const std::vector<std::string>& arguments) const
{
    // RunChild names a registry that does not exist; the program env names this one again.
    std::vector<std::string> all = {"ZUREGISTRY=" + RegistryFile().string(), (Folder() / kToolName).string()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    ToolRun run = RunChild({"/usr/bin/env", Folder(), {}}, all);
    ExpectJsonOf(arguments, run);
    return run;
}

void Installed::Register() const
{
    void* const module = dlopen(Module().c_str(), RTLD_NOW | RTLD_LOCAL);
    const auto entry =
        module == nullptr ? nullptr : reinterpret_cast<HRESULT (*)()>(dlsym(module, "DllRegisterServer"));
    const HRESULT registered = entry == nullptr ? E_FAIL : entry();
    if (module != nullptr) {
        dlclose(module);
    }
    Expect(registered, "the module does not register");
}

void Installed::SetRegistered(const char* clsid, const fs::path& module) const
{
    const std::u16string key = KeyOf(clsid);
    if (module.empty()) {
        Expect(ZuRegistryDeleteTree(key.c_str()), "the key is not removed");
    } else {
        Expect(ZuRegistrySetValue((key + u"\\InprocServer32").c_str(), nullptr, module.u16string().c_str()),
               "the value is not written");
    }
}

}  // namespace zupm::test
