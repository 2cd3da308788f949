#include <CLI/CLI.hpp>

#include <memory>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/ManyFiles.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/model/Search.h"
#include "tools/zupolicy/report/Excerpt.h"
#include "tools/zupolicy/report/QueryReport.h"
#include "tools/zupolicy/report/Redaction.h"

namespace zupm::tool {
namespace {

struct QueryOptions {
    std::vector<std::string> files;
    model::Patterns patterns;
    Redaction hidden;
    bool json = false;
    bool table = false;
    bool count = false;
    unsigned jobs = ReadingJobs();
};

/// What a thread keeps from file to file.
struct Reader {
    zupm::Runtime runtime;
    model::FileReader files;
};

QueryResult ResultOf(const std::string& file, Reader& reader, const model::Patterns& patterns,
                     const Redaction& redaction)
{
    try {
        QueryResult result{file, model::Search(reader.files.Open(file), patterns), {}};
        for (model::Match& match : result.matches) {
            if (redaction.Hides(match.id, match.section, match.name)) {
                match.value = kHidden;
            }
        }
        return result;
    } catch (const std::exception&) {
        return {file, {}, CurrentProblem(file)};
    }
}

std::unique_ptr<QueryReport> MakeReport(const QueryOptions& options, std::ostream& out)
{
    if (options.json) {
        return std::make_unique<QueryJson>(out);
    }
    if (options.table) {
        return std::make_unique<QueryTable>(out);
    }
    if (options.count) {
        return std::make_unique<QueryCount>(out);
    }
    return std::make_unique<QueryText>(out);
}

ExitCode RunQuery(const QueryOptions& options, Streams streams)
{
    const std::unique_ptr<QueryReport> report = MakeReport(options, streams.data);
    bool hasMatch = false;
    bool hasProblem = false;
    const Redaction& redaction = options.hidden;
    const auto search = [&, reader = std::shared_ptr<Reader>()](const std::string& path) mutable {
        if (!reader) {
            reader = std::make_shared<Reader>();
        }
        return ResultOf(path, *reader, options.patterns, redaction);
    };
    const auto print = [&](const QueryResult& result) {
        hasMatch = hasMatch || !result.matches.empty();
        hasProblem = hasProblem || result.problem;
        report->Add(result);
        if (result.problem) {
            streams.messages.Line(LineOf(*result.problem));
            PrintExcerpt(streams.messages, *result.problem);
        }
    };
    ForEachFile(options.files, options.jobs, streams, false, search, print);
    report->End();
    if (hasProblem) {
        return ExitCode::FileError;
    }
    return hasMatch ? ExitCode::Ok : ExitCode::NotFound;
}

Action DeclareQuery(CLI::App& line)
{
    const auto options = std::make_shared<QueryOptions>();
    line.add_option("FILE", options->files, "The policy files")->required();
    const auto add = [&](const char* name, auto& pattern, const char* description, const char* type) {
        line.add_option(name, pattern, description)->group("What to find (* and ? are wildcards)")->type_name(type);
    };
    add("--software", options->patterns.softwareId, "Only settings of these products", "ID");
    add("--task", options->patterns.taskId, "Only settings of these tasks, and none of policies", "ID");
    add("--section", options->patterns.section, "Only settings of these sections", "SECTION");
    add("--name", options->patterns.name, "Only settings of these names", "NAME");
    add("--value", options->patterns.value, "Only settings with these values", "VALUE");
    CLI::Option* const json = line.add_flag("--json", options->json, "Print JSON");
    CLI::Option* const table =
        line.add_flag("--tsv", options->table, "Print columns, separated by tabs")->excludes(json);
    line.add_flag("--count", options->count, "Print each value with the number of files that have it")
        ->excludes(json)
        ->excludes(table);
    AddRedact(line, options->hidden);
    AddJobs(line, options->jobs, "How many files to read at a time (default: the processors, at most 8)");
    return [options](Streams streams) {
        return Hiding(options->hidden, streams, [&] { return RunQuery(*options, streams); });
    };
}

}  // namespace

constinit const Command kQuery{
    .name = "query",
    .description =
        "Find settings in many policy files. Exit code 1: nothing was found; 3: a file cannot be read, the others "
        "were searched",
    .examples =
        "  zupolicy query policy.xml --section General --name ScanInterval\n"
        "  zupolicy query *.xml --software 'PRODUCTA*' --name Enabled --value 0\n"
        "  zupolicy query *.xml --section General --name ScanInterval --count\n"
        "  zupolicy query *.xml --task '*' --tsv",
    .declare = DeclareQuery,
};

}  // namespace zupm::tool
