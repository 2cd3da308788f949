#include <CLI/CLI.hpp>

#include <memory>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/ManyFiles.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/PageFiles.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/commands/RulesOption.h"
#include "tools/zupolicy/report/Excerpt.h"
#include "tools/zupolicy/report/PageReport.h"

namespace zupm::tool {
namespace {

struct ReportOptions {
    std::vector<std::string> files;
    std::string output = "-";
    std::string title = "Policy report";
    std::optional<std::string> rules;
    Redaction hidden;
    bool json = false;
    unsigned jobs = ReadingJobs();
};

ExitCode RunReport(const ReportOptions& options, Streams streams)
{
    static_cast<void>(Valid(options.title));
    RequireOtherFile(options.output, options.files);
    if (options.rules) {
        RequireOtherFile(options.output, {*options.rules});
    }
    const std::optional<rules::RuleSet> rules = RulesFor(options.rules, options.files);
    const Redaction& redaction = options.hidden;
    PageData data(redaction);
    PageReport report{options.output};
    const auto read = [&](const std::string& path) {
        const zupm::Runtime runtime;
        return ReadForPage(path, rules ? &*rules : nullptr, redaction);
    };
    const auto add = [&](const PageFile& file) {
        data.Add(file);
        report.Add(file);
        if (file.failure) {
            streams.messages.Line(LineOf(*file.failure));
            PrintExcerpt(streams.messages, *file.failure);
        }
    };
    ForEachFile(options.files, options.jobs, streams, false, read, add);
    WritePageTo(options.output, data, {PageHead::Kind::Files, options.title, false, {}}, streams.data);
    if (options.json) {
        report.WriteAsJson(streams.data);
        RequirePrinted(streams, options.output);
    }
    return report.Failures().empty() ? ExitCode::Ok : ExitCode::FileError;
}

/// Standard output takes either the page or the report about it.
void RequireOneUseOfStandardOutput(const ReportOptions& options)
{
    if (options.json && options.output == "-") {
        throw CLI::ValidationError("the page goes to standard output, so --json needs --output PATH");
    }
}

Action DeclareReport(CLI::App& line)
{
    const auto options = std::make_shared<ReportOptions>();
    line.add_option("FILE", options->files, "The policy files; - for standard input")->required();
    AddPageOutput(line, options->output);
    line.add_option("--title", options->title, "What the page is called (default: Policy report)")->type_name("TITLE");
    AddRules(line, options->rules);
    AddRedact(line, options->hidden);
    AddJobs(line, options->jobs, "How many files to read at a time (default: the processors, at most 8)");
    AddJson(line, options->json);
    line.callback([options] { RequireOneUseOfStandardOutput(*options); });
    return [options](Streams streams) {
        return Hiding(options->hidden, streams, [&] { return RunReport(*options, streams); });
    };
}

}  // namespace

constinit const Command kReport{
    .name = "report",
    .description =
        "Write one HTML page about policy files: what they hold, where they differ and what is wrong with them. A "
        "browser shows it without a network. Exit code 3: a file cannot be read; the page says so",
    .examples =
        "  zupolicy report policy.xml -o report.html\n"
        "  zupolicy report *.xml -o report.html --title 'All sites'\n"
        "  zupolicy report *.xml -o report.html --rules rules.json --redact '*Password*'",
    .declare = DeclareReport,
};

}  // namespace zupm::tool
