#include <CLI/CLI.hpp>

#include <memory>

#include "tools/zupolicy/client/CallError.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/CheckReport.h"
#include "tools/zupolicy/report/Json.h"

namespace zupm::tool {
namespace {

struct CheckOptions {
    std::vector<std::string> files;
    bool verbose = false;
    bool strict = false;
    bool json = false;
};

/// A failure's message without the file's name in front: a report names the file itself.
std::string_view WithoutName(std::string_view message, const std::string& path)
{
    const std::string name = path + ": ";
    return message.starts_with(name) ? message.substr(name.size()) : message;
}

CheckReport ReportOf(const std::string& path, bool withCounts)
{
    try {
        PolicyFile file(path, Access::ReadOnly);
        return {path, SoundFile{file.Notices(), withCounts ? file.Count() : Counts()}, {}, {}, {}};
    } catch (const CallError& error) {
        return BrokenReport(path, error.Description());
    } catch (const Failure& failure) {
        return {path, std::nullopt, {}, {}, std::string(WithoutName(failure.what(), path))};
    }
}

/// Whether the file is good enough for `check` to end with 0.
bool Passes(const CheckReport& report, const CheckOptions& options)
{
    return report.sound && (!options.strict || report.sound->notices.Count() == 0);
}

// Each report is printed and dropped before the next file is read.
ExitCode RunCheck(const CheckOptions& options, Streams streams)
{
    JsonWriter json(streams.data);
    if (options.json) {
        json.BeginArray();
    }
    bool allPass = true;
    for (const std::string& path : options.files) {
        const CheckReport report = ReportOf(path, options.verbose || options.json);
        allPass = Passes(report, options) && allPass;
        PrintReport(streams.messages, report);
        if (options.verbose && report.sound) {
            PrintCounts(streams.messages, report);
        }
        if (options.json) {
            WriteReportAsJson(json, report);
        }
    }
    if (options.json) {
        json.EndArray();
    }
    return allPass ? ExitCode::Ok : ExitCode::FileError;
}

Action DeclareCheck(CLI::App& line)
{
    const auto options = std::make_shared<CheckOptions>();
    line.add_option("FILE", options->files, "The policy files")->required();
    line.add_flag("--verbose", options->verbose, "Print counts for each sound file");
    line.add_flag("--strict", options->strict, "Fail on warnings, too");
    AddJson(line, options->json);
    return [options](Streams streams) { return RunCheck(*options, streams); };
}

}  // namespace

constinit const Command kCheck{
    .name = "check",
    .description =
        "Load policy files. Print file:line:column: message for each broken one, and warnings about what is "
        "odd in the others; print nothing about a sound one",
    .examples =
        "  zupolicy check policy.xml\n"
        "  zupolicy check --verbose *.xml\n"
        "  zupolicy check --json policy.xml",
    .declare = DeclareCheck,
};

}  // namespace zupm::tool
