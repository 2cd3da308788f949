#include <algorithm>
#include <ostream>
#include <utility>

#include "client/PolicyFile.h"
#include "commands/Commands.h"
#include "model/IniCollisions.h"
#include "output/CheckText.h"
#include "output/Json.h"
#include "text/FilePosition.h"

namespace zupm::tool {
namespace {

void Count(Counts& counts, const std::vector<Section>& sections)
{
    counts.sections += sections.size();
    for (const Section& section : sections) {
        counts.settings += section.settings.size();
    }
}

Counts CountAll(const FileContents& contents)
{
    Counts counts{contents.policies.size(), contents.tasks.size(), 0, 0};
    for (const Policy& policy : contents.policies) {
        Count(counts, policy.sections);
    }
    for (const Task& task : contents.tasks) {
        Count(counts, task.sections);
    }
    return counts;
}

/// In the order of the file.
std::vector<Duplicate> WarningsOf(const FileContents& contents)
{
    std::vector<Duplicate> warnings = contents.duplicates;
    const std::vector<Duplicate> collisions = IniCollisions(contents.tasks);
    warnings.insert(warnings.end(), collisions.begin(), collisions.end());
    std::ranges::stable_sort(warnings, {},
                             [](const Duplicate& warning) { return std::pair(warning.line, warning.column); });
    return warnings;
}

CheckReport ReportOf(const std::string& path)
{
    CheckReport report;
    report.file = path;
    try {
        const FileContents contents = PolicyFile(path, Access::ReadOnly).Contents();
        report.ok = true;
        report.duplicates = WarningsOf(contents);
        report.counts = CountAll(contents);
    } catch (const CallError& error) {
        const FilePosition position = SplitPosition(path, error.Description());
        report.line = position.line;
        report.column = position.column;
        report.message = position.message;
    }
    return report;
}

}  // namespace

ExitCode RunCommand(const CheckOptions& options, Streams streams)
{
    std::vector<CheckReport> reports;
    bool allOk = true;
    for (const std::string& path : options.files) {
        reports.push_back(ReportOf(path));
        allOk = allOk && reports.back().ok;
        streams.messages << ReportAsText(reports.back());
        if (options.verbose && reports.back().ok) {
            streams.messages << CountsAsText(reports.back());
        }
    }
    if (options.json) {
        streams.data << ReportsAsJson(reports);
    }
    return allOk ? ExitCode::Ok : ExitCode::FileError;
}

}  // namespace zupm::tool
