#include "tools/zupolicy/report/CheckText.h"

#include "tools/zupolicy/report/WarningText.h"

namespace zupm::tool {
namespace {

std::string Place(const std::string& file, std::uint64_t line, std::uint64_t column)
{
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": ";
}

}  // namespace

void PrintReport(Messages& messages, const CheckReport& report)
{
    if (!report.contents) {
        const std::string place =
            report.line ? Place(report.file, *report.line, report.column.value_or(1)) : report.file + ": ";
        messages.Line(place + report.message);
        return;
    }
    for (const Warning& warning : report.contents->warnings) {
        PrintWarning(messages, report.file, *report.contents, warning);
    }
}

void PrintWarning(Messages& messages, const std::string& file, const FileContents& contents, const Warning& warning)
{
    messages.Line(Place(file, warning.line, warning.column) + "warning: " + WarningText(contents, warning));
}

void PrintCounts(Messages& messages, const CheckReport& report)
{
    const auto count = [](std::size_t number, const std::string& one, const std::string& many) {
        return std::to_string(number) + " " + (number == 1 ? one : many);
    };
    const FileContents& contents = *report.contents;
    messages.Line(report.file + ": ok: " + count(contents.policies.size(), "policy", "policies") + ", " +
                  count(contents.tasks.size(), "task", "tasks") + ", " +
                  count(contents.sections.size(), "section", "sections") + ", " +
                  count(contents.settings.size(), "setting", "settings"));
}

}  // namespace zupm::tool
