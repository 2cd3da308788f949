#include <CLI/CLI.hpp>

#include <memory>
#include <utility>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/EditFiles.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/ReadEntry.h"

namespace zupm::tool {
namespace {

struct ImportOptions : FilesOptions {
    std::string entry;
    bool replace = false;
    bool merge = false;
};

model::EditRequest ReadEntryOf(const ImportOptions& options)
{
    using Kind = model::EditRequest::Kind;
    model::EditRequest edit = ReadingInput(options.entry, "the entry", options.hidden, model::ReadEntry);
    edit.kind = options.merge ? Kind::Entry : options.replace ? Kind::ExactEntry : Kind::OwnEntry;
    return edit;
}

ExitCode RunImport(const ImportOptions& options, Streams streams)
{
    return EditFiles(options, {options.entry, {ReadEntryOf(options)}, false}, streams);
}

Action DeclareImport(CLI::App& line)
{
    const auto options = std::make_shared<ImportOptions>();
    line.add_option("FILE", options->files,
                    "The policy files; the last argument is ENTRY, a policy or task as JSON (- for standard input)")
        ->required();
    CLI::Option* const merge =
        line.add_flag("--merge", options->merge, "Set what ENTRY has in an entry that exists; the rest stays");
    line.add_flag("--replace", options->replace,
                  "Make an entry that exists like ENTRY; sections and settings that ENTRY does not have go")
        ->excludes(merge);
    AddFiles(line, *options);
    line.callback([options] {
        RequireSuffix(options->backupSuffix);
        // The parser gives all arguments to the first that takes several.
        if (options->files.size() < 2) {
            throw CLI::ValidationError("FILE and ENTRY are required");
        }
        options->entry = std::move(options->files.back());
        options->files.pop_back();
    });
    return [options](Streams streams) {
        return Hiding(
            options->hidden, streams, [&] { return RunImport(*options, streams); }, options->quiet);
    };
}

}  // namespace

constinit const Command kImport{
    .name = "import",
    .description =
        "Put a policy or task that `zupolicy export` printed into policy files. A file that has other content for it "
        "is refused unless --replace or --merge says what to do. A file that has it already is not written",
    .examples =
        "  zupolicy import new.xml entry.json\n"
        "  zupolicy import *.xml entry.json --replace --backup --dry-run\n"
        "  zupolicy export policy.xml PRODUCTA1000 | zupolicy import other.xml - --merge",
    .declare = DeclareImport,
};

}  // namespace zupm::tool
