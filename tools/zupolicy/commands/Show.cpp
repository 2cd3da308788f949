#include <algorithm>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Json.h"
#include "tools/zupolicy/report/ShowText.h"

namespace zupm::tool {
namespace {

void RequireSomething(const FileContents& contents, const ShowOptions& options, const Selection& selection)
{
    const auto isSelected = [&](const auto& record) { return selection.Has(contents, record); };
    if (!options.softwareId || std::any_of(contents.policies.begin(), contents.policies.end(), isSelected) ||
        std::any_of(contents.tasks.begin(), contents.tasks.end(), isSelected)) {
        return;
    }
    const Target target{*options.softwareId, options.taskId};
    const std::string what = options.taskId ? Describe(target) : Describe(target) + " and tasks of it";
    throw Failure(ExitCode::NotFound,
                  options.file + ": " + what + ": not in the file" + SuggestionFor(contents, target));
}

}  // namespace

ExitCode RunCommand(const ShowOptions& options, Streams streams)
{
    const FileContents contents = ReadContents(options.file);
    const Selection selection{options.softwareId, options.taskId, !options.namesOnly};
    RequireSomething(contents, options, selection);
    if (options.json) {
        WriteContentsAsJson(streams.data, options.file, contents, selection);
    } else {
        WriteContentsAsText(streams.data, options.file, contents, selection);
    }
    return ExitCode::Ok;
}

}  // namespace zupm::tool
