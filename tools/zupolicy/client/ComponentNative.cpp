#include <dlfcn.h>

#include "tools/zupolicy/client/Component.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

/// Loads the component from where the program's libraries are, for the rest of the process's life. It announces its
/// classes then, so no registration is needed, and none can lead to another copy of the component.
void LoadComponent()
{
    static const bool isLoaded = dlopen("libzuPolicyManager64.so", RTLD_NOW | RTLD_LOCAL) != nullptr;
    if (!isLoaded) {
        throw ProblemFailure(
            {{}, ExitCode::Other, {}, 0, 0, "the component libzuPolicyManager64.so cannot be loaded", kDoctorHint});
    }
}

}  // namespace

void CreateObject(REFCLSID clsid, REFIID iid, void** out)
{
    LoadComponent();
    CheckCreation(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, out));
}

}  // namespace zupm::tool
