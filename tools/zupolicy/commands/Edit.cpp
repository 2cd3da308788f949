#include "commands/Edit.h"

#include <ostream>

#include "output/ChangeText.h"
#include "output/Json.h"

namespace zupm::tool {
namespace {

/// A file that would only get new time stamps is left alone, so a job that runs every hour does not touch it every
/// hour; a file that was asked for by name is always written.
bool MustWrite(const Change& change, const EditOptions& options)
{
    return !options.dryRun && (change.changed || options.output);
}

}  // namespace

void FinishEdit(PolicyFile& file, Change change, const EditOptions& options, Streams streams)
{
    if (MustWrite(change, options)) {
        change.written = options.output.value_or(file.Path());
        file.Write(*change.written);
    }
    if (options.json) {
        streams.data << ChangeAsJson(change);
    } else if (options.dryRun) {
        streams.data << ChangeAsText(change);
    }
}

}  // namespace zupm::tool
