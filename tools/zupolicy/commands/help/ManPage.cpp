#include "tools/zupolicy/commands/help/ManPage.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "tools/zupolicy/commands/help/CommandText.h"
#include "tools/zupolicy/commands/help/Roff.h"

namespace zupm::tool {
namespace {

std::string Bold(std::string_view text)
{
    return "\\fB" + Roff(text) + "\\fR";
}

std::string Italic(std::string_view text)
{
    return "\\fI" + Roff(text) + "\\fR";
}

/// The title line. Its date stays empty: whoever installs the page knows it.
void Begin(RoffPage& page, std::string_view name, std::string_view summary)
{
    std::string title(name);
    std::ranges::transform(title, title.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    page.Request("TH \"" + Roff(title) + "\" \"1\" \"\" \"zuPolicyManager " ZUPM_VERSION "\" \"User Commands\"");
    page.Request("nh");
    page.Request("SH NAME");
    page.Escaped(Roff(name) + " \\- " + Roff(summary));
}

/// The first sentence, as a summary of a page is written: without a capital letter and a full stop.
std::string Summary(std::string_view description)
{
    std::string summary(description.substr(0, std::min(description.find('\n'), description.find(". "))));
    if (summary.ends_with('.')) {
        summary.pop_back();
    }
    if (!summary.empty()) {
        summary.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(summary.front())));
    }
    return summary;
}

std::string Synopsis(const CommandText& command)
{
    std::string synopsis = Bold("zupolicy " + command.name) + " [" + Italic("OPTIONS") + "]";
    for (const ArgumentText& argument : command.arguments) {
        const std::string name = Italic(argument.name) + (argument.repeats ? "..." : "");
        synopsis += argument.isRequired ? " " + name : " [" + name + "]";
    }
    for (const OptionText& option : command.options) {
        if (option.isRequired) {
            synopsis += " " + Bold(option.names.back()) + " " + Italic(option.value);
        }
    }
    return synopsis;
}

/// The option as it is written on a line.
std::string TermOf(const OptionText& option)
{
    std::string term;
    for (const std::string& name : option.names) {
        term += (term.empty() ? "" : ", ") + Bold(name);
    }
    if (option.value.empty()) {
        return term;
    }
    return term + (option.valueMayBeMissing ? "[=" + Italic(option.value) + "]" : " " + Italic(option.value));
}

std::string Listed(const std::vector<std::string>& names)
{
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

std::string Sentence(std::string text)
{
    if (!text.empty() && !text.ends_with('.')) {
        text += '.';
    }
    return text;
}

std::string TextOf(const OptionText& option)
{
    std::string text = Sentence(option.description);
    if (!option.choices.empty()) {
        text += "\nOne of " + Listed(option.choices) + ".";
    }
    if (!option.range.empty()) {
        text += "\n" + option.value + " is " + option.range + ".";
    }
    if (option.repeats) {
        text += "\nMay be given several times.";
    }
    if (!option.others.empty()) {
        text += "\nNot with " + Listed(option.others) + ".";
    }
    return text;
}

void AddOptions(RoffPage& page, const CommandText& command)
{
    page.Request("SH OPTIONS");
    std::vector<std::string> groups = {"Options"};
    for (const OptionText& option : command.options) {
        if (!option.group.empty() && std::ranges::find(groups, option.group) == groups.end()) {
            groups.push_back(option.group);
        }
    }
    for (const std::string& group : groups) {
        if (group != groups.front()) {
            page.Heading("SS", group);
        }
        for (const OptionText& option : command.options) {
            if (option.group == group) {
                page.Item(TermOf(option), TextOf(option));
            }
        }
    }
}

void AddArguments(RoffPage& page, const CommandText& command)
{
    if (command.arguments.empty()) {
        return;
    }
    page.Request("SH ARGUMENTS");
    for (const ArgumentText& argument : command.arguments) {
        page.Item(Italic(argument.name), Sentence(argument.description));
    }
}

/// References to other pages.
void AddReferences(RoffPage& page, const std::vector<std::string>& commands)
{
    page.Request("SH \"SEE ALSO\"");
    for (const std::string& command : commands) {
        page.Request("BR " + Roff(command) + " (1),");
    }
    page.Request("BR " + Roff("zupolicy-policy-file") + " (5),");
    page.Request("BR " + Roff("zupolicy-concepts") + " (7)");
}

/// A paragraph of the program's help: a heading with indented lines, or plain text.
void AddParagraph(RoffPage& page, std::string_view paragraph)
{
    const std::size_t end = paragraph.find('\n');
    if (end == std::string_view::npos || !paragraph.substr(0, end).ends_with(':')) {
        page.Request("PP");
        page.Text(paragraph);
        return;
    }
    std::string title(paragraph.substr(0, end - 1));
    std::string_view lines = paragraph.substr(end + 1);
    if (title != "Exit codes") {
        std::ranges::transform(title, title.begin(),
                               [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
        page.Heading("SH", title);
        page.Example(lines);
        return;
    }
    page.Heading("SH", "EXIT STATUS");
    while (!lines.empty()) {
        const std::size_t lineEnd = std::min(lines.find('\n'), lines.size());
        const std::string_view line = lines.substr(0, lineEnd);
        const std::size_t code = std::min(line.find_first_not_of(' '), line.size());
        const std::size_t codeEnd = std::min(line.find(' ', code), line.size());
        const std::size_t text = std::min(line.find_first_not_of(' ', codeEnd), line.size());
        page.Item(Bold(line.substr(code, codeEnd - code)), line.substr(text));
        lines.remove_prefix(std::min(lineEnd + 1, lines.size()));
    }
}

void AddFooter(RoffPage& page, std::string_view footer)
{
    while (!footer.empty()) {
        const std::size_t end = std::min(footer.find("\n\n"), footer.size());
        std::string_view paragraph = footer.substr(0, end);
        paragraph.remove_prefix(std::min(paragraph.find_first_not_of('\n'), paragraph.size()));
        if (!paragraph.empty()) {
            AddParagraph(page, paragraph);
        }
        footer.remove_prefix(std::min(end + 2, footer.size()));
    }
}

}  // namespace

std::string ManPageOfProgram(std::string_view description, std::string_view footer)
{
    RoffPage page;
    Begin(page, "zupolicy", Summary(description));
    page.Request("SH SYNOPSIS");
    page.Escaped(Bold("zupolicy") + " " + Italic("COMMAND") + " [" + Italic("ARGUMENTS") + "]");
    page.Request("PP");
    page.Escaped(Bold("zupolicy help") + " [" + Italic("COMMAND") + "]");
    page.Request("PP");
    page.Escaped(Bold("zupolicy --version"));
    page.Request("SH DESCRIPTION");
    page.Text(description);
    page.Request("SH COMMANDS");
    std::vector<std::string> pages;
    for (const Command* command : kCommands) {
        page.Item(Bold(command->name), Sentence(command->description));
        pages.push_back(std::string("zupolicy-") + command->name);
    }
    page.Item(Bold("help"), "Explain the program, or one command.");
    page.Request("SH OPTIONS");
    page.Item(Bold("-h") + ", " + Bold("--help"), "The same as help. After a command it explains the command.");
    page.Item(Bold("--json"), "With help, --version and every command: print JSON.");
    page.Item(Bold("--version"), "Print the version, how the program was built, and the formats that it knows.");
    AddFooter(page, footer);
    AddReferences(page, pages);
    return page.Source();
}

std::string ManPageOf(const Command& command)
{
    const CommandText text = TextOf(command);
    RoffPage page;
    Begin(page, "zupolicy-" + text.name, Summary(text.description));
    page.Request("SH SYNOPSIS");
    page.Escaped(Synopsis(text));
    page.Request("SH DESCRIPTION");
    page.Text(Sentence(text.description));
    AddArguments(page, text);
    AddOptions(page, text);
    page.Request("SH \"EXIT STATUS\"");
    page.Request("BR zupolicy (1)");
    page.Text("lists the exit codes of all commands.");
    page.Request("SH EXAMPLES");
    page.Example(text.examples);
    AddReferences(page, {"zupolicy"});
    return page.Source();
}

}  // namespace zupm::tool
