#include "tools/zupolicy/commands/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

#include "tools/zupolicy/commands/FlagValue.h"
#include "tools/zupolicy/commands/Version.h"
#include "tools/zupolicy/commands/help/Completion.h"
#include "tools/zupolicy/commands/help/FindCommand.h"
#include "tools/zupolicy/commands/help/HelpJson.h"
#include "tools/zupolicy/commands/help/ManPage.h"
#include "tools/zupolicy/report/NearestName.h"
#include "tools/zupolicy/report/Redaction.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

constexpr const char* kDescription =
    "Shows, changes and checks policy files.\n"
    "Results go to standard output, messages to standard error; all text is UTF-8.";

constexpr const char* kFooter =
    "\nExit codes:\n"
    "  0  done\n"
    "  1  the policy, task, section or setting is not in the file; diff: the files differ; query: nothing was found;\n"
    "     watch: no change before the time was over\n"
    "  2  the command line is wrong\n"
    "  3  a file cannot be read, parsed or written; check: or it breaks a rule\n"
    "  4  anything else that failed\n"
    "  5  another program changed the file in the meantime\n"
    "  6  another process held the lock of the file for too long\n"
    "  7  the file is written, but a later step failed\n"
    "\nExamples:\n"
    "  zupolicy show policy.xml\n"
    "  zupolicy get policy.xml PRODUCTA1000 General Enabled\n"
    "  zupolicy set policy.xml PRODUCTA1000 General Enabled 0 --dry-run\n"
    "\nzupolicy help COMMAND explains one command. With --json the help, too, is printed as JSON.";

constexpr const char* kHelpAdvice = "zupolicy help lists the commands; zupolicy help COMMAND explains one.";

constexpr const char* kDashAdvice =
    "Put -- before a value that begins with a dash: zupolicy set FILE ID SECTION NAME -- -x";

/// The parser of one command. It is a parser of its own, not a part of the program's: as a part it would take the
/// argument "++" for its end.
class CommandParser {
public:
    explicit CommandParser(const Command& command)
        : m_command(command), m_line(command.description, std::string("zupolicy ") + command.name)
    {
        m_line.footer(std::string("\nExamples:\n") + command.examples);
        // A value such as /var/lib must never be taken for an option, on either target.
        m_line.allow_windows_style_options(false);
        m_action = command.declare(m_line);
    }

    [[nodiscard]] std::string Help() const { return m_line.help(); }
    /// Parses what follows the command's name.
    [[nodiscard]] ParsedLine Parse(const std::vector<std::string>& arguments);

private:
    [[nodiscard]] UsageFailure Unexpected(const std::string& argument) const;
    [[nodiscard]] UsageFailure ComplaintAbout(const CLI::ParseError& error) const;
    void RequireValues(const std::vector<std::string>& arguments) const;
    [[nodiscard]] std::string Advice() const;

    const Command& m_command;
    CLI::App m_line;
    Action m_action;
    bool m_hides = false;  ///< the line has values that no message may show
};

std::string HelpOf(const Command& command, bool isJson)
{
    const Command* const one[] = {&command};
    return isJson ? HelpAsJson(one) : CommandParser(command).Help();
}

std::string HelpOfProgram()
{
    CLI::App app(kDescription, "zupolicy");
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("zupolicy " ZUPM_VERSION));
    app.require_subcommand(1);
    for (const Command* command : kCommands) {
        app.add_subcommand(command->name, command->description);
    }
    app.add_subcommand("help", "Explain the program, or one command: zupolicy help COMMAND");
    return app.help();
}

UsageFailure NoSuchCommand(const std::string& name)
{
    NearestName nearest(name);
    nearest.Offer("help");
    for (const Command* command : kCommands) {
        nearest.Offer(command->name);
    }
    return {"no such command: " + Quoted(name), nearest.Suggestion(), kHelpAdvice};
}

/// The command of that name. Throws UsageFailure.
const Command& CommandOf(const std::string& name)
{
    const Command* const found = FindCommand(name);
    if (found == nullptr) {
        throw NoSuchCommand(name);
    }
    return *found;
}

std::string ManPage(const std::vector<std::string>& names)
{
    if (names.size() > 1) {
        throw UsageFailure("help --man prints one page at a time", {}, kHelpAdvice);
    }
    return names.empty() ? ManPageOfProgram(kDescription, kFooter) : ManPageOf(CommandOf(names.front()));
}

/// Answers `help`, whose arguments these are.
std::string Help(std::vector<std::string> arguments)
{
    const bool isJson = std::erase(arguments, "--json") != 0;
    if (!arguments.empty() && arguments.front() == "--man") {
        if (isJson) {
            throw UsageFailure("help --man prints the source of a page and cannot be used with --json", {},
                               kHelpAdvice);
        }
        return ManPage({arguments.begin() + 1, arguments.end()});
    }
    if (arguments.size() > 1) {
        throw UsageFailure("help explains one command at a time", {}, kHelpAdvice);
    }
    if (arguments.empty() || arguments.front() == "help") {
        return isJson ? HelpAsJson(kCommands) : HelpOfProgram();
    }
    return HelpOf(CommandOf(arguments.front()), isJson);
}

bool IsOption(const std::string& argument)
{
    return argument.size() > 1 && argument.front() == '-' && argument != "--";
}

/// The complaint about an argument that the command does not take. It may be a value in the wrong place.
UsageFailure CommandParser::Unexpected(const std::string& argument) const
{
    if (!IsOption(argument)) {
        return {"unexpected argument: " + (m_hides ? Quoted(kHidden) : Quoted(argument)), {}, Advice()};
    }
    const std::string name = argument.substr(0, argument.find('='));
    NearestName nearest(name);
    for (const CLI::Option* option : m_line.get_options()) {
        for (const std::string& longName : option->get_lnames()) {
            nearest.Offer("--" + longName);
        }
    }
    return {"no such option: " + (m_hides ? Quoted(kHidden) : Quoted(name)), nearest.Suggestion(), Advice()};
}

/// What is wrong with the line: first of all an option that does not exist, which may be why something is missing.
UsageFailure CommandParser::ComplaintAbout(const CLI::ParseError& error) const
{
    const std::vector<std::string> rest = m_line.remaining();
    const auto option = std::find_if(rest.begin(), rest.end(), IsOption);
    if (option != rest.end()) {
        return Unexpected(*option);
    }
    const bool isExtra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr && !rest.empty();
    if (isExtra) {
        return Unexpected(rest.front());
    }
    const std::string complaint = error.what();
    // "Could not convert: --priority = 1x"
    return {m_hides ? complaint.substr(0, complaint.find(" = ")) : complaint, {}, Advice()};
}

std::string CommandParser::Advice() const
{
    const std::vector<std::string> rest = m_line.remaining();
    if (m_command.takesAnyValue && std::ranges::any_of(rest, IsOption)) {
        return kDashAdvice;
    }
    return std::string("zupolicy help ") + m_command.name + " explains the command.";
}

/// Throws UsageFailure for an option with nothing after its "=". The parser would take `--backup=` for `--backup`, and
/// the argument that follows for the value of another option.
void CommandParser::RequireValues(const std::vector<std::string>& arguments) const
{
    const auto isEmpty = [&](const std::string& argument) {
        return argument.find('=') + 1 == argument.size() && argument.starts_with("--") &&
               m_line.get_option_no_throw(argument.substr(0, argument.size() - 1)) != nullptr;
    };
    const auto end = std::ranges::find(arguments, "--");
    if (const auto empty = std::find_if(arguments.begin(), end, isEmpty); empty != end) {
        throw UsageFailure(*empty + " has no value", {}, Advice());
    }
}

ParsedLine CommandParser::Parse(const std::vector<std::string>& arguments)
{
    m_hides = HasOption(arguments, "--redact");
    if (const std::optional<std::string> flag = FindFlagWithValue(m_line, arguments)) {
        throw UsageFailure(*flag + " takes no value", {}, Advice());
    }
    RequireValues(arguments);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        m_line.parse(reversed);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) {
            throw ComplaintAbout(error);
        }
        return {{}, HelpOf(m_command, HasOption(arguments, "--json"))};
    }
    return {m_action, {}};
}

}  // namespace

UsageFailure::UsageFailure(const std::string& complaint, const std::string& suggestion, std::string advice)
    : ProblemFailure({{}, ExitCode::Usage, {}, 0, 0, complaint, suggestion.empty() ? advice : suggestion},
                     complaint + (suggestion.empty() ? "" : "; " + suggestion)),
      m_advice(std::move(advice))
{
}

bool HasOption(const std::vector<std::string>& arguments, std::string_view option)
{
    const auto end = std::ranges::find(arguments, "--");
    return std::any_of(arguments.begin(), end, [&](std::string_view argument) {
        return argument.starts_with(option) && (argument.size() == option.size() || argument[option.size()] == '=');
    });
}

ParsedLine ParseCommandLine(const std::vector<std::string>& arguments)
{
    if (arguments.empty()) {
        throw UsageFailure("a command is missing", {}, kHelpAdvice);
    }
    const std::string& first = arguments.front();
    if (first == "help" || first == "--help" || first == "-h") {
        return {{}, Help({arguments.begin() + 1, arguments.end()})};
    }
    if (first == "--version") {
        return {{}, HasOption(arguments, "--json") ? VersionAsJson() : VersionOfProgram()};
    }
    if (first == kCompleteCommand) {
        return {{}, CompletionFor({arguments.begin() + 1, arguments.end()})};
    }
    return CommandParser(CommandOf(first)).Parse({arguments.begin() + 1, arguments.end()});
}

}  // namespace zupm::tool
