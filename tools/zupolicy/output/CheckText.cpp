#include "output/CheckText.h"

namespace zupm::tool {
namespace {

std::string Place(const std::string& file, std::uint64_t line, std::uint64_t column)
{
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": ";
}

}  // namespace

std::string ReportAsText(const CheckReport& report)
{
    if (!report.ok) {
        const std::string place =
            report.line ? Place(report.file, *report.line, report.column.value_or(1)) : report.file + ": ";
        return place + report.message + "\n";
    }
    return WarningsAsText(report.file, report.duplicates);
}

std::string WarningsAsText(const std::string& file, const std::vector<Duplicate>& warnings)
{
    std::string text;
    for (const Duplicate& warning : warnings) {
        text += Place(file, warning.line, warning.column) + "warning: " + warning.message + "\n";
    }
    return text;
}

std::string CountsAsText(const CheckReport& report)
{
    const auto count = [](std::size_t number, const std::string& one, const std::string& many) {
        return std::to_string(number) + " " + (number == 1 ? one : many);
    };
    return report.file + ": ok: " + count(report.counts.policies, "policy", "policies") + ", " +
           count(report.counts.tasks, "task", "tasks") + ", " + count(report.counts.sections, "section", "sections") +
           ", " + count(report.counts.settings, "setting", "settings") + "\n";
}

}  // namespace zupm::tool
