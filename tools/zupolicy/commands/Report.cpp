#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <thread>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/InOrder.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/PageFiles.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/report/Excerpt.h"
#include "tools/zupolicy/rules/ReadRules.h"

namespace zupm::tool {
namespace {

struct ReportOptions {
    std::vector<std::string> files;
    std::string output = "-";
    std::string title = "Policy report";
    std::optional<std::string> rules;
    Redaction hidden;
    unsigned jobs = std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
};

ExitCode RunReport(const ReportOptions& options, Streams streams)
{
    RequireOtherFile(options.output, options.files);
    const std::optional<rules::RuleSet> rules =
        options.rules ? std::optional(rules::ReadRules(*options.rules)) : std::nullopt;
    const Redaction& redaction = options.hidden;
    PageData data(redaction);
    bool hasFailure = false;
    const auto read = [&](std::size_t number) {
        const zupm::Runtime runtime;
        return ReadForPage(options.files[number], rules ? &*rules : nullptr, redaction);
    };
    const auto add = [&](std::size_t /*number*/, const PageFile& file) {
        data.Add(file);
        if (file.failure) {
            hasFailure = true;
            streams.messages.Line(LineOf(*file.failure));
            PrintExcerpt(streams.messages, *file.failure);
        }
    };
    InOrder(options.files.size(), options.jobs, read, add).Run();
    WritePageTo(options.output, data, {PageHead::Kind::Files, options.title, false, {}}, streams.data);
    return hasFailure ? ExitCode::FileError : ExitCode::Ok;
}

Action DeclareReport(CLI::App& line)
{
    const auto options = std::make_shared<ReportOptions>();
    line.add_option("FILE", options->files, "The policy files; - for standard input")->required();
    AddPageOutput(line, options->output);
    line.add_option("--title", options->title, "What the page is called (default: Policy report)")->type_name("TITLE");
    line.add_option("--rules", options->rules, "Also check the files against these rules, a JSON Schema")
        ->type_name("RULES");
    AddRedact(line, options->hidden);
    AddJobs(line, options->jobs, "How many files to read at a time (default: the processors, at most 8)");
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
