#include "tests/planting/Target.h"

#include <dlfcn.h>

#include <cstdlib>

namespace zupm::test {

const char* const kComponentName = "libzuPolicyManager64.so";
const char* const kSearchPathVariable = "LD_LIBRARY_PATH";
const bool kLibrariesHaveTexts = false;
const bool kLogsAreWritten = true;

void SetVariable(const std::string& name, const std::filesystem::path& value)
{
    ::setenv(name.c_str(), value.c_str(), 1);
}

std::filesystem::path Variable(const std::string& name)
{
    const char* const value = std::getenv(name.c_str());
    return value == nullptr ? "" : value;
}

GetClassObject LoadComponent(const std::filesystem::path& path)
{
    void* const module = ::dlopen(path.c_str(), RTLD_NOW);
    return module == nullptr ? nullptr : reinterpret_cast<GetClassObject>(::dlsym(module, "DllGetClassObject"));
}

}  // namespace zupm::test
