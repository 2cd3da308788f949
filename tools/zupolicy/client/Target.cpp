#include "tools/zupolicy/client/Target.h"

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {

std::string Describe(const Target& target)
{
    const std::string id = Shortened(target.softwareId);
    return target.taskId ? "task " + id + " " + Shortened(*target.taskId) : "policy " + id;
}

}  // namespace zupm::tool
