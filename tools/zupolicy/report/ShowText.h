/// What `show` prints of a file, and how it prints that for people.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "tools/zupolicy/client/contents/FileContents.h"
#include "tools/zupolicy/report/Redaction.h"

namespace zupm::tool {

/// Everything, the policy and tasks of one product, or one task of it.
struct Selection {
    std::optional<std::string> softwareId;
    std::optional<std::string> taskId;
    bool withSections = true;
    Redaction redaction = {};

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

void WriteContentsAsText(std::ostream& out, const std::string& file, const FileContents& contents,
                         const Selection& selection);

}  // namespace zupm::tool
