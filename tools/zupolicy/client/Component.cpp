#include "tools/zupolicy/client/Component.h"

#include "tools/zupolicy/client/CallError.h"

namespace zupm::tool {

void CheckCreation(HRESULT result)
{
    try {
        Check(result, "the component zuPolicyManager64");
    } catch (const CallError& error) {
        throw error.With("; zupolicy doctor says more");
    }
}

}  // namespace zupm::tool
