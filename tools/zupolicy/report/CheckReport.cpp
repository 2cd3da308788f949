#include "tools/zupolicy/report/CheckReport.h"

#include "tools/zupolicy/report/Excerpt.h"

namespace zupm::tool {
namespace {

std::string Place(const std::string& file, std::uint64_t line, std::uint64_t column)
{
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": ";
}

}  // namespace

void PrintReport(Messages& messages, const CheckReport& report)
{
    if (!report.sound) {
        const Problem& problem = report.problem;
        const std::string place =
            problem.line != 0 ? Place(report.file, problem.line, problem.column) : report.file + ": ";
        messages.Line(place + problem.message);
        PrintExcerpt(messages, problem);
        return;
    }
    const Notices& notices = report.sound->notices;
    for (LONG i = 0; i < notices.Count(); ++i) {
        PrintWarning(messages, report.file, notices.At(i));
    }
    if (report.sound->problems) {
        for (const RuleProblem& problem : *report.sound->problems) {
            PrintProblem(messages, report.file, problem);
        }
    }
}

void PrintWarning(Messages& messages, const std::string& file, const Notice& notice)
{
    messages.Line(Place(file, notice.line, notice.column) + "warning: " + notice.text);
}

void PrintCounts(Messages& messages, const CheckReport& report)
{
    const auto count = [](std::size_t number, const std::string& one, const std::string& many) {
        return std::to_string(number) + " " + (number == 1 ? one : many);
    };
    const Counts& counts = report.sound->counts;
    messages.Line(report.file + ": ok: " + count(counts.policies, "policy", "policies") + ", " +
                  count(counts.tasks, "task", "tasks") + ", " + count(counts.sections, "section", "sections") + ", " +
                  count(counts.settings, "setting", "settings"));
}

}  // namespace zupm::tool
