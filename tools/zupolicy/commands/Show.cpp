#include <algorithm>
#include <ostream>

#include "Failure.h"
#include "client/PolicyFile.h"
#include "commands/Commands.h"
#include "output/Json.h"
#include "output/ShowText.h"

namespace zupm::tool {
namespace {

/// Takes out everything that the filters do not name.
void Filter(FileContents& contents, const ShowOptions& options)
{
    if (!options.softwareId) {
        return;
    }
    std::erase_if(contents.policies, [&](const Policy& policy) {
        return options.taskId.has_value() || policy.softwareId != *options.softwareId;
    });
    std::erase_if(contents.tasks, [&](const Task& task) {
        return task.softwareId != *options.softwareId || (options.taskId && task.taskId != *options.taskId);
    });
}

void RequireSomething(const FileContents& contents, const ShowOptions& options)
{
    if (!options.softwareId || !contents.policies.empty() || !contents.tasks.empty()) {
        return;
    }
    const Target target{*options.softwareId, options.taskId};
    const std::string what = options.taskId ? Describe(target) : Describe(target) + " and tasks of it";
    throw Failure(ExitCode::NotFound, options.file + ": " + what + ": not in the file");
}

void DropSections(FileContents& contents)
{
    for (Policy& policy : contents.policies) {
        policy.sections.clear();
    }
    for (Task& task : contents.tasks) {
        task.sections.clear();
    }
}

}  // namespace

ExitCode RunCommand(const ShowOptions& options, Streams streams)
{
    FileContents contents = PolicyFile(options.file, Access::ReadOnly).Contents();
    Filter(contents, options);
    RequireSomething(contents, options);
    if (options.namesOnly) {
        DropSections(contents);
    }
    streams.data << (options.json ? ContentsAsJson(options.file, contents, !options.namesOnly)
                                  : ContentsAsText(options.file, contents));
    return ExitCode::Ok;
}

}  // namespace zupm::tool
