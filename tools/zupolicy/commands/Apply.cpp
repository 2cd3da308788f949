#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <utility>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/EditFiles.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/ReadEdits.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

struct ApplyOptions : FilesOptions {
    std::string edits;
};

ProblemFailure Unreadable(const std::string& name)
{
    return ProblemFailure({{}, ExitCode::FileError, name, 0, 0, "the edits cannot be read", {}});
}

std::vector<model::EditRequest> ReadStream(std::istream& in, const ApplyOptions& options)
{
    try {
        return model::ReadEdits(in);
    } catch (const model::EditsComplaint& complaint) {
        throw ProblemFailure({result::SyntaxError,
                              ExitCode::FileError,
                              options.edits,
                              complaint.place.line,
                              complaint.place.column,
                              ComplaintToShow(complaint.message, options.hidden),
                              {}});
    } catch (const std::ios_base::failure&) {
        throw Unreadable(options.edits);
    }
}

std::vector<model::EditRequest> ReadEditsOf(const ApplyOptions& options)
{
    if (options.edits == "-") {
        std::vector<model::EditRequest> edits = ReadStream(std::cin, options);
        // The stream takes an error for the end, and half of the edits must not pass for all of them.
        if (std::ferror(stdin) != 0) {
            throw Unreadable("-");
        }
        return edits;
    }
    std::ifstream file(std::filesystem::path(std::u8string(options.edits.begin(), options.edits.end())),
                       std::ios::binary);
    if (!file) {
        throw Unreadable(options.edits);
    }
    return ReadStream(file, options);
}

ExitCode RunApply(const ApplyOptions& options, Streams streams)
{
    return EditFiles(options, {options.edits, ReadEditsOf(options), true}, streams);
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
