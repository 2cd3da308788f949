#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/doctor/BinaryHeader.h"
#include "tools/zupolicy/client/doctor/Diagnosis.h"
#include "tools/zupolicy/client/doctor/Installation.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

namespace fs = std::filesystem;

struct ClassRow {
    const char* name;
    const CLSID* clsid;
    const OLECHAR* progId;
};

constexpr ClassRow kClasses[] = {
    {"PolicyFile", &CLSID_PolicyFile, kProgIdPolicyFile.c_str()},
    {"PolicyProduct", &CLSID_PolicyProduct, kProgIdPolicyProduct.c_str()},
    {"PolicyTask", &CLSID_PolicyTask, kProgIdPolicyTask.c_str()},
    {"TaskInfo", &CLSID_TaskInfo, kProgIdTaskInfo.c_str()},
};

constexpr const char* kReinstall = "Install the package again, or put the file of the same version there.";

std::string Name(const fs::path& path)
{
    return ToUtf8(path.u16string());
}

/// The steps of one module; after a failure nothing more is added.
class Steps {
public:
    explicit Steps(ModuleDiagnosis& diagnosis) : m_diagnosis(diagnosis) {}

    void Ok(std::string step, std::string text) { Add({std::move(step), Outcome::Ok, std::move(text), {}}); }
    void Note(std::string step, std::string text) { Add({std::move(step), Outcome::Note, std::move(text), {}}); }
    void Fail(std::string step, std::string text, std::string advice)
    {
        Add({std::move(step), Outcome::Failed, std::move(text), std::move(advice)});
        m_goesOn = false;
    }

    [[nodiscard]] bool GoesOn() const { return m_goesOn; }

private:
    void Add(Finding finding) { m_diagnosis.findings.push_back(std::move(finding)); }

    ModuleDiagnosis& m_diagnosis;
    bool m_goesOn = true;
};

/// What a failed call reports; empty for success.
std::string ProblemOf(HRESULT result, const char* call)
{
    try {
        Check(result, {{}, call});
        return {};
    } catch (const ProblemFailure& failure) {
        return failure.what();
    }
}

bool IsFile(const fs::path& path)
{
    std::error_code failed;
    return fs::is_regular_file(path, failed);
}

void CheckWordSize(const fs::path& module, Steps& steps)
{
    const auto own = ReadBinaryHeader(OwnProgram());
    const auto header = ReadBinaryHeader(module);
    if (!header) {
        steps.Fail("word size", Name(module) + " cannot be read, or is no library of this system", kReinstall);
    } else if (own && *header != *own) {
        steps.Fail("word size",
                   Name(module) + " is for another processor: " + std::to_string(header->bits) + " bits, machine " +
                       std::to_string(header->machine),
                   "Install the package for this processor; the component has 64 bits only.");
    } else {
        steps.Ok("word size", std::to_string(header->bits) + " bits, as this program");
    }
}

void CheckResources(const fs::path& module, Steps& steps)
{
    std::string searched;
    std::string problem;
    for (const fs::path& folder : ResourceFolders(module)) {
        searched += (searched.empty() ? "" : " or ") + Name(folder);
        const fs::path file = folder / kResourceModule;
        if (!IsFile(file)) {
            continue;
        }
        problem = ProblemOfResourceModule(file);
        if (problem.empty()) {
            steps.Ok("resource module", Name(file));
            return;
        }
        problem.insert(0, Name(file) + " ");
    }
    if (problem.empty()) {
        steps.Fail("resource module", std::string("there is no ") + kResourceModule + " in " + searched,
                   "Put AgentRes.dll of the same version there. Without it no object can be created.");
    } else {
        steps.Fail("resource module", problem,
                   "Put AgentRes.dll of the same version there. With a damaged one no object can be created, or the "
                   "log lacks its texts.");
    }
}

/// What can be found out without loading the module.
void CheckFiles(const fs::path& module, Steps& steps)
{
    CheckWordSize(module, steps);
    if (steps.GoesOn()) {
        CheckResources(module, steps);
    }
    if (steps.GoesOn() && !IsWhole(module)) {
        steps.Fail("loads", Name(module) + " is cut off", kReinstall);
    }
}

HRESULT CreateThrough(ModuleEntry::GetClassObject entry, REFCLSID clsid)
{
    ComPtr<IClassFactory> factory;
    const HRESULT found = entry(clsid, IID_IClassFactory, factory.PutVoid());
    ComPtr<IUnknown> object;
    return found < 0 ? found : factory->CreateInstance(nullptr, IID_IUnknown, object.PutVoid());
}

HRESULT CreateRegistered(REFCLSID clsid)
{
    ComPtr<IUnknown> object;
    return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.PutVoid());
}

template <class CreateClass>
void CheckClasses(const CreateClass& create, Steps& steps)
{
    for (const ClassRow& row : kClasses) {
        if (const std::string problem = ProblemOf(create(*row.clsid), row.name); !problem.empty()) {
            steps.Fail(row.name, problem,
                       std::string("The module or AgentRes.dll is damaged or of another version. ") + kReinstall);
            return;
        }
        steps.Ok(row.name, "an object was created");
    }
}

void CheckLoading(const fs::path& module, Steps& steps)
{
    const ModuleEntry entry = LoadModule(module);
    if (entry.getClassObject == nullptr) {
        steps.Fail("loads", Name(module) + ": " + entry.problem, kReinstall);
        return;
    }
    steps.Ok("loads", "");
    CheckClasses([&](REFCLSID clsid) { return CreateThrough(entry.getClassObject, clsid); }, steps);
}

std::string Joined(const std::vector<fs::path>& folders)
{
    std::string text;
    for (const fs::path& folder : folders) {
        text += (text.empty() ? "" : ", ") + Name(folder);
    }
    return text;
}

void CheckOwnModule(bool isRegistered, Steps& steps)
{
    const ModulePlace place = FindOwnModule();
    if (place.path.empty() && kUsesRegisteredModule && isRegistered) {
        steps.Note("found", "there is none beside zupolicy, so it uses the registered one");
        return;
    }
    if (place.path.empty()) {
        steps.Fail("found", std::string("there is no ") + kModuleFile + " in " + Joined(place.searched),
                   "Install the package again, or put the module and AgentRes.dll beside zupolicy.");
        return;
    }
    steps.Ok("found", Name(place.path));
    CheckFiles(place.path, steps);
    if (steps.GoesOn()) {
        CheckLoading(place.path, steps);
    }
    if (steps.GoesOn()) {
        steps.Note("registration", RegistrationFreeUse(place.path));
    }
}

/// Reads the four registrations; the module that they name, empty when there is none or they are not sound.
fs::path CheckRegistration(const fs::path& ownModule, Steps& steps)
{
    const std::string advice = "Register the module again: " + HowToRegister(ownModule);
    fs::path module;
    std::string missing;
    for (const ClassRow& row : kClasses) {
        const RegisteredClass found = ReadRegistration(*row.clsid);
        if (!found.problem.empty()) {
            steps.Fail("registered", RegistryName() + " cannot be read: " + found.problem,
                       "Restore it from a copy, or remove it and register the module again.");
            return {};
        }
        if (found.module.empty()) {
            missing += (missing.empty() ? "" : ", ") + std::string(row.name);
        } else if (!module.empty() && module != found.module) {
            steps.Fail("registered",
                       RegistryName() + " names two modules: " + Name(module) + " and " + Name(found.module), advice);
            return {};
        } else {
            module = found.module;
        }
    }
    if (module.empty()) {
        steps.Note("registered", "no: " + RegistryName() +
                                     " has none of the classes. Clients that need it: " + HowToRegister(ownModule));
    } else if (!missing.empty()) {
        steps.Fail("registered", RegistryName() + " has only some of the classes. Missing: " + missing, advice);
        return {};
    } else {
        steps.Ok("registered", Name(module));
    }
    return module;
}

void CheckProgIds(const fs::path& ownModule, Steps& steps)
{
    for (const ClassRow& row : kClasses) {
        CLSID clsid{};
        const HRESULT read = CLSIDFromProgID(row.progId, &clsid);
        if (read < 0 || clsid != *row.clsid) {
            steps.Fail("names",
                       ToUtf8(std::u16string(row.progId, row.progId + std::char_traits<OLECHAR>::length(row.progId))) +
                           " does not name its class",
                       "Register the module again: " + HowToRegister(ownModule));
            return;
        }
    }
    steps.Ok("names", "ZuPolicyManager.PolicyFile and the others");
}

void CheckRegisteredModule(const fs::path& module, const fs::path& ownModule, Steps& steps)
{
    if (!IsFile(module)) {
        steps.Fail("found", "there is no file " + Name(module),
                   "Register the module where it is now: " + HowToRegister(ownModule));
        return;
    }
    steps.Ok("found", Name(module));
    CheckFiles(module, steps);
    if (steps.GoesOn()) {
        CheckProgIds(ownModule, steps);
    }
    if (steps.GoesOn()) {
        CheckClasses(CreateRegistered, steps);
    }
}

}  // namespace

const Finding* FirstFailure(const Diagnosis& diagnosis)
{
    for (const ModuleDiagnosis& module : diagnosis.modules) {
        for (const Finding& finding : module.findings) {
            if (finding.outcome == Outcome::Failed) {
                return &finding;
            }
        }
    }
    return nullptr;
}

Diagnosis Diagnose()
{
    const fs::path own = FindOwnModule().path;
    const fs::path advised = own.empty() ? fs::path(kModuleFile) : own;
    ModuleDiagnosis registered{"The module that registered clients get", "registered", {}};
    Steps registeredSteps(registered);
    // The registered module is first: natively a module that is loaded announces its classes, and registration is no
    // longer asked.
    const fs::path module = CheckRegistration(advised, registeredSteps);
    if (!module.empty()) {
        CheckRegisteredModule(module, advised, registeredSteps);
    }
    ModuleDiagnosis tool{"The module that zupolicy uses", "zupolicy", {}};
    Steps toolSteps(tool);
    CheckOwnModule(!module.empty(), toolSteps);
    return {{std::move(tool), std::move(registered)}};
}

}  // namespace zupm::tool
