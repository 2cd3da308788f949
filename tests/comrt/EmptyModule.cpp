// A module without the entry points of a component server.
#include "zuPolicyManager/zucomrt.h"

extern "C" __attribute__((visibility("default"))) HRESULT SomethingElse();

HRESULT SomethingElse()
{
    return S_OK;
}
