#include "tools/zupolicy/client/Component.h"

#include "tools/zupolicy/client/CallError.h"

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
