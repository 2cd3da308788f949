#include "tools/zupolicy/client/CallError.h"
#include "tools/zupolicy/client/Component.h"

namespace zupm::tool {

// The tool is linked with the component, which announced its classes when the process loaded it: no registration is
// needed, and none could lead to another copy of the component.
void CreateObject(REFCLSID clsid, REFIID iid, void** out)
{
    Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, out), "the component zuPolicyManager64");
}

}  // namespace zupm::tool
