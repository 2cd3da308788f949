#include <dlfcn.h>
#include <link.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <set>

#include "tools/zupolicy/client/Component.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/doctor/Installation.h"

namespace zupm::tool {
namespace {

namespace fs = std::filesystem;

/// The folders in which the loader looks for this program's libraries.
std::vector<fs::path> LoaderFolders()
{
    void* const program = dlopen(nullptr, RTLD_NOW);
    Dl_serinfo room{};
    if (program == nullptr || dlinfo(program, RTLD_DI_SERINFOSIZE, &room) != 0) {
        return {};
    }
    std::vector<std::byte> memory(room.dls_size);
    auto* const found = reinterpret_cast<Dl_serinfo*>(memory.data());
    if (dlinfo(program, RTLD_DI_SERINFOSIZE, found) != 0 || dlinfo(program, RTLD_DI_SERINFO, found) != 0) {
        return {};
    }
    std::vector<fs::path> folders;
    for (unsigned i = 0; i < found->dls_cnt; ++i) {
        folders.emplace_back(found->dls_serpath[i].dls_name);
    }
    return folders;
}

std::string Variable(const char* name)
{
    const char* const value = secure_getenv(name);
    return value == nullptr ? std::string() : value;
}

/// Why the registry file cannot be read. Never empty: an empty text means that it can.
std::string ProblemOfRegistry(HRESULT result)
{
    constexpr auto kBadFormat = static_cast<HRESULT>(0x8007000Du);
    if (result == kBadFormat) {
        return "it is not in the format of a registry file";
    }
    const std::string sentence = ToUtf8(result::SentenceFor(result));
    return sentence.empty() ? "error " + std::to_string(result) : sentence;
}

}  // namespace

const char* const kModuleFile = "libzuPolicyManager64.so";
const bool kUsesRegisteredModule = false;

fs::path OwnProgram()
{
    return "/proc/self/exe";
}

ModulePlace FindOwnModule()
{
    ModulePlace place{{}, LoaderFolders()};
    for (const fs::path& folder : place.searched) {
        std::error_code failed;
        if (fs::exists(folder / kModuleFile, failed)) {
            place.path = folder / kModuleFile;
            break;
        }
    }
    return place;
}

ModuleEntry LoadModule(const fs::path& path)
{
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        return {nullptr, dlerror()};  // NOLINT(concurrency-mt-unsafe): each thread has its own
    }
    const auto entry = reinterpret_cast<ModuleEntry::GetClassObject>(dlsym(module, "DllGetClassObject"));
    return {entry, entry == nullptr ? "it has no function DllGetClassObject" : ""};
}

std::vector<fs::path> ResourceFolders(const fs::path& module)
{
    return {module.parent_path(), module.parent_path() / "zuPolicyManager"};
}

std::string ProblemOfResourceModule(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::set<std::string> numbers;
    for (std::string line; std::getline(file, line);) {
        if (file.eof()) {
            return "is cut off: its last line has no end";
        }
        const std::size_t tab = line.find('\t');
        if (tab == line.npos) {
            return "is no resource module: its lines are a number, a tab and a text";
        }
        numbers.insert(line.substr(0, tab));
    }
    for (const std::uint32_t text : kResourceTexts) {
        if (!numbers.contains(std::to_string(text))) {
            return "has no text " + std::to_string(text);
        }
    }
    return {};
}

RegisteredClass ReadRegistration(REFCLSID clsid)
{
    OLECHAR text[39]{};
    static_cast<void>(StringFromGUID2(clsid, text, 39));
    Bstr value;
    const std::u16string key = std::u16string(u"CLSID\\") + text + u"\\InprocServer32";
    const HRESULT read = ZuRegistryGetValue(key.c_str(), nullptr, value.Slot());
    if (read < 0 && read != result::FileNotFound) {
        return {{}, ProblemOfRegistry(read)};
    }
    return {ToUtf8(value.Text()), {}};
}

std::string RegistryName()
{
    if (const std::string file = Variable("ZUREGISTRY"); !file.empty()) {
        return "the registry file " + file;
    }
    const std::string data = Variable("XDG_DATA_HOME");
    const std::string folder = data.starts_with('/') ? data : Variable("HOME") + "/.local/share";
    return "the registry file " + folder + "/zupolicymanager/registry";
}

std::string HowToRegister(const fs::path& module)
{
    return "python3 -c \"import ctypes; ctypes.CDLL('" + module.string() + "').DllRegisterServer()\"";
}

std::string RegistrationFreeUse(const fs::path& /*module*/)
{
    return "programs that link the module need no registration";
}

}  // namespace zupm::tool
