#include "tools/zupolicy/report/CheckReport.h"

#include <charconv>

namespace zupm::tool {
namespace {

/// Takes "123:" off the front; nothing when the text does not begin like that.
std::optional<std::uint64_t> TakeNumber(std::string_view& text)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (error != std::errc() || length == text.size() || *end != ':') {
        return std::nullopt;
    }
    text.remove_prefix(length + 1);
    return number;
}

std::string Place(const std::string& file, std::uint64_t line, std::uint64_t column)
{
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": ";
}

}  // namespace

CheckReport BrokenReport(const std::string& file, std::string_view description)
{
    CheckReport whole{file, std::nullopt, {}, {}, std::string(description)};
    if (!description.starts_with(file + ":")) {
        return whole;
    }
    description.remove_prefix(file.size() + 1);
    const auto line = TakeNumber(description);
    const auto column = line ? TakeNumber(description) : std::nullopt;
    if (!column) {
        return whole;
    }
    description.remove_prefix(description.starts_with(' ') ? 1 : 0);
    return {file, std::nullopt, line, column, std::string(description)};
}

void PrintReport(Messages& messages, const CheckReport& report)
{
    if (!report.sound) {
        const std::string place =
            report.line ? Place(report.file, *report.line, report.column.value_or(1)) : report.file + ": ";
        messages.Line(place + report.message);
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
