#include "tools/zupolicy/report/CheckReport.h"

#include <charconv>

#include "tools/zupolicy/client/contents/IniName.h"
#include "tools/zupolicy/report/Visible.h"

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

std::string NameOf(const FileContents& contents, std::uint32_t number)
{
    const Setting& setting = contents.settings[number];
    return "setting " + Shortened(contents.Text(setting.name)) + " of section " +
           Shortened(contents.Text(contents.sections[setting.section].name));
}

std::string TextOfTwo(const std::string& later, const std::string& first)
{
    return later + " and " + first + " have the same name in an INI file; only one is kept";
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

std::string WarningText(const FileContents& contents, const Warning& warning)
{
    const std::string text = Shortened(contents.Text(warning.text));
    const std::string other = Shortened(contents.Text(warning.other));
    switch (warning.kind) {
        case Warning::Kind::PolicyAgain:
            return "policy " + text + " occurs again; only the first is used";
        case Warning::Kind::TaskAgain:
            return "task " + other + " " + text + " occurs again; only the first is used";
        case Warning::Kind::SectionAgain:
            return "section " + text + " occurs again; both are read as one";
        case Warning::Kind::SettingAgain:
            return "setting " + text + " of section " + other + " occurs again; only the first is used";
        case Warning::Kind::NoRoots:
            return "the file has neither a PolicyRoot nor a TaskRoot element; it may not be a policy file";
        case Warning::Kind::NotANumber:
            return "attribute " + other + " is not a number: \"" + text + "\"";
        case Warning::Kind::SameInIni:
            return TextOfTwo(NameOf(contents, warning.setting), NameOf(contents, warning.first));
        case Warning::Kind::SameAsField:
            return TextOfTwo(NameOf(contents, warning.setting),
                             "the task's field " + std::string(kIniFields[warning.first]));
    }
    return {};
}

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
