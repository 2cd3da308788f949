#include "commands/Edit.h"

#include <chrono>
#include <filesystem>
#include <ostream>
#include <utility>

#include "commands/WriteToStream.h"
#include "output/ChangeText.h"
#include "output/Json.h"
#include "text/Utf8.h"

namespace zupm::tool {
namespace {

/// A file that would only get new time stamps is left alone, so a job that runs every hour does not touch it every
/// hour; a file that was asked for by name is always written.
bool MustWrite(const Change& change, const EditOptions& options)
{
    return !options.dryRun && (change.changed || options.output);
}

}  // namespace

std::optional<WriteTarget> TargetOf(const std::string& file, const EditOptions& options)
{
    std::error_code ignored;
    if (options.dryRun || options.GoesToStandardOutput() ||
        (!options.output && !std::filesystem::exists(FromUtf8(file), ignored))) {
        return std::nullopt;
    }
    return std::optional<WriteTarget>(std::in_place, options.output.value_or(file),
                                      std::chrono::seconds(options.lock.timeoutSeconds));
}

void FinishEdit(PolicyFile& file, const std::optional<WriteTarget>& target, Change change, const EditOptions& options,
                Streams streams)
{
    if (options.GoesToStandardOutput()) {
        WriteToStream(file, streams.data);
        return;
    }
    if (target && MustWrite(change, options)) {
        if (!options.force) {
            target->RequireUnchanged();
        }
        change.written = target->Path();
        file.Write(*change.written);
    }
    if (options.json) {
        WriteChangeAsJson(streams.data, change);
    } else if (options.dryRun) {
        streams.data << ChangeAsText(change);
    }
}

}  // namespace zupm::tool
