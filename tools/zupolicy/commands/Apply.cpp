#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/EditFiles.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/ReadEdits.h"

namespace zupm::tool {
namespace {

struct ApplyOptions : FilesOptions {
    std::string edits;
};

ExitCode RunApply(const ApplyOptions& options, Streams streams)
{
    std::vector<model::EditRequest> edits = ReadingInput(options.edits, "the edits", options.hidden, model::ReadEdits);
    return EditFiles(options, {options.edits, std::move(edits), true}, streams);
}

Action DeclareApply(CLI::App& line)
{
    const auto options = std::make_shared<ApplyOptions>();
    line.add_option("FILE", options->files, "The policy files")->required();
    line.add_option("--edits", options->edits, "The edits: JSON, one object a line (- for standard input)")
        ->type_name("EDITS")
        ->required();
    AddFiles(line, *options);
    return [options](Streams streams) {
        return Hiding(
            options->hidden, streams, [&] { return RunApply(*options, streams); }, options->quiet);
    };
}

}  // namespace

constinit const Command kApply{
    .name = "apply",
    .description =
        "Make many edits in policy files. In each file all are made, in one write, or none. A file that is as the "
        "edits want it is not written",
    .examples =
        "  zupolicy apply policy.xml --edits edits.jsonl --dry-run\n"
        "  zupolicy apply *.xml --edits edits.jsonl --backup --keep-going\n"
        "  zupolicy diff old.xml new.xml --ignore-versions --json | zupolicy apply policy.xml --edits -",
    .declare = DeclareApply,
};

}  // namespace zupm::tool
