#include "model/Target.h"

#include "text/Utf8.h"

namespace zupm::tool {

std::string Describe(const Target& target)
{
    const std::string id = ForTerminal(target.softwareId);
    return target.taskId ? "task " + id + " " + ForTerminal(*target.taskId) : "policy " + id;
}

}  // namespace zupm::tool
