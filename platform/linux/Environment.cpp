#include <cstdlib>

#include "platform/LogOutput.h"

namespace zupm {

std::optional<std::string> TrustedEnvironmentVariable(const char* name)
{
    const char* const value = ::secure_getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

}  // namespace zupm
