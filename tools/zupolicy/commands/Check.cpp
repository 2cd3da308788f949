#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/ManyFiles.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/commands/RulesOption.h"
#include "tools/zupolicy/report/CheckReport.h"
#include "tools/zupolicy/report/Json.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

struct CheckOptions {
    std::vector<std::string> files;
    std::optional<std::string> rules;
    Redaction hidden;
    bool verbose = false;
    bool strict = false;
    bool json = false;
    unsigned jobs = ReadingJobs();
};

/// What the component notices about a file; with `counts` also these, which take a reading of its own.
Notices NoticesOf(const std::string& path, Counts* counts)
{
    if (counts == nullptr) {
        return PolicyFile(path, Access::ReadOnly).Notices();
    }
    std::optional<Notices> notices;
    *counts = CountContents(path, [&](PolicyFile& file) { notices = file.Notices(); });
    return std::move(*notices);
}

/// What a file is checked against.
struct Demands {
    std::optional<rules::RuleSet> rules;
    Redaction redaction;
};

SoundFile WithProblems(const std::string& path, const Demands& demands)
{
    std::optional<Notices> notices;
    const PlacedContents placed = ReadPlaced(path, [&](PolicyFile& file) { notices = file.Notices(); });
    std::vector<rules::Violation> violations =
        rules::CheckRules(*demands.rules, rules::DocumentOf(placed.contents), demands.redaction);
    return {std::move(*notices), CountsOf(placed.contents), Placed(std::move(violations), placed.text)};
}

CheckReport ReportOf(const std::string& path, bool withCounts, const Demands& demands)
{
    try {
        if (demands.rules) {
            return {path, WithProblems(path, demands), {}};
        }
        Counts counts;
        Notices notices = NoticesOf(path, withCounts ? &counts : nullptr);
        return {path, SoundFile{std::move(notices), counts, std::nullopt}, {}};
    } catch (const Failure&) {
        return {path, std::nullopt, CurrentProblem(path)};
    }
}

/// Whether the file is good enough for `check` to end with 0.
bool Passes(const CheckReport& report, const CheckOptions& options)
{
    if (!report.sound || (options.strict && report.sound->notices.Count() != 0)) {
        return false;
    }
    const auto isBad = [&](const RuleProblem& problem) { return options.strict || problem.IsError(); };
    return !report.sound->problems || std::ranges::none_of(*report.sound->problems, isBad);
}

ExitCode RunCheck(const CheckOptions& options, Streams streams)
{
    const Demands demands{RulesFor(options.rules, options.files), options.hidden};
    JsonWriter json(streams.data);
    if (options.json) {
        json.BeginDocument();
        json.Key("files").BeginArray();
    }
    bool allPass = true;
    const auto check = [&](const std::string& path) {
        const zupm::Runtime runtime;
        return ReportOf(path, options.verbose || options.json, demands);
    };
    const auto print = [&](const CheckReport& report) {
        allPass = Passes(report, options) && allPass;
        PrintReport(streams.messages, report);
        if (options.verbose && report.sound) {
            PrintCounts(streams.messages, report);
        }
        if (options.json) {
            WriteReportAsJson(json, report);
        }
    };
    ForEachFile(options.files, options.jobs, streams, false, check, print);
    if (options.json) {
        json.EndArray();
        json.EndObject();
    }
    return allPass ? ExitCode::Ok : ExitCode::FileError;
}

Action DeclareCheck(CLI::App& line)
{
    const auto options = std::make_shared<CheckOptions>();
    line.add_option("FILE", options->files, "The policy files; - for standard input")->required();
    AddRules(line, options->rules);
    AddRedact(line, options->hidden);
    line.add_flag("-v,--verbose", options->verbose, "Print counts for each sound file");
    line.add_flag("--strict", options->strict, "Fail on warnings, too");
    AddJson(line, options->json);
    AddJobs(line, options->jobs, "How many files to check at a time (default: the processors, at most 8)");
    return [options](Streams streams) {
        return Hiding(options->hidden, streams, [&] { return RunCheck(*options, streams); });
    };
}

}  // namespace

constinit const Command kCheck{
    .name = "check",
    .description =
        "Load policy files. Print file:line:column: message for each broken one and for each part that breaks a rule, "
        "and warnings about what is odd in the others; print nothing about a sound one",
    .examples =
        "  zupolicy check policy.xml\n"
        "  zupolicy check --verbose *.xml\n"
        "  zupolicy check --json policy.xml\n"
        "  zupolicy check --rules rules.json *.xml",
    .declare = DeclareCheck,
};

}  // namespace zupm::tool
