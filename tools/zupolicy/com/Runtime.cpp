#include "com/Runtime.h"

#include <zuPolicyManager/zuPolicyManager.h>

#include "com/CallError.h"

namespace zupm::tool {

Runtime::Runtime()
{
    Check(CoInitializeEx(nullptr, COINIT_MULTITHREADED), "the component runtime");
}

Runtime::~Runtime()
{
    CoUninitialize();
}

}  // namespace zupm::tool
