/// What `show` prints of a file.
#pragma once

#include <optional>
#include <string>

#include "tools/zupolicy/client/contents/FileContents.h"

namespace zupm::tool {

/// Everything, or what belongs to one product, or one task of it.
struct Selection {
    std::optional<std::string> softwareId;
    std::optional<std::string> taskId;
    bool withSections = true;

    [[nodiscard]] bool Has(const FileContents& contents, const Policy& policy) const
    {
        return !taskId && (!softwareId || contents.Text(policy.softwareId) == *softwareId);
    }
    [[nodiscard]] bool Has(const FileContents& contents, const Task& task) const
    {
        return (!softwareId || contents.Text(task.softwareId) == *softwareId) &&
               (!taskId || contents.Text(task.taskId) == *taskId);
    }
};

}  // namespace zupm::tool
