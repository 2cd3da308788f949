#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Edit.h"
#include "tools/zupolicy/report/Explain.h"

namespace zupm::tool {
namespace {

/// Removes the section, or the setting, and gives the value that a removed setting had.
std::optional<std::string> RemoveInside(Entry& entry, const RemoveOptions& options)
{
    const std::u16string section = FromUtf8(*options.section);
    if (!options.name) {
        entry.RemoveSection(section);
        return std::nullopt;
    }
    const std::u16string name = FromUtf8(*options.name);
    std::string before = ToUtf8(entry.Get(section, name));
    entry.RemoveSetting(section, name);
    return before;
}

}  // namespace

ExitCode RunCommand(const RemoveOptions& options, Streams streams)
{
    PolicyFile file = OpenToEdit(options.file, options.edit);
    Change change{options.target, false, options.section, options.name, {}, {}, {}, true, {}};
    Explaining({options.file, options.target, options.section, options.name}, [&] {
        if (options.section) {
            const auto entry = file.Find(options.target);
            change.before = RemoveInside(*entry, options);
            file.Add(*entry);
        } else {
            file.Remove(options.target);
        }
    });
    FinishEdit(file, std::move(change), options.edit, streams);
    return ExitCode::Ok;
}

}  // namespace zupm::tool
