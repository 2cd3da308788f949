#include "tools/zupolicy/commands/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <ostream>
#include <string_view>
#include <utility>

#include "tools/zupolicy/report/NearestName.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

constexpr const char* kDescription =
    "Shows, changes and checks policy files.\n"
    "Results go to standard output, messages to standard error; all text is UTF-8.";

constexpr const char* kFooter =
    "\nExit codes:\n"
    "  0  done\n"
    "  1  the policy, task, section or setting is not in the file; diff: the files differ\n"
    "  2  the command line is wrong\n"
    "  3  a file cannot be read, parsed or written\n"
    "  4  anything else that failed\n"
    "  5  another program changed the file in the meantime\n"
    "  6  another process held the lock of the file for too long\n"
    "  7  the file is written, but a later step failed\n"
    "\nExamples:\n"
    "  zupolicy show policy.xml\n"
    "  zupolicy get policy.xml PRODUCTA1000 General Enabled\n"
    "  zupolicy set policy.xml PRODUCTA1000 General Enabled 0 --dry-run\n"
    "\nzupolicy help COMMAND explains one command.";

constexpr const char* kHelpHint = "zupolicy help lists the commands; zupolicy help COMMAND explains one.";

constexpr const char* kDashHint =
    "Put -- before a value that begins with a dash: zupolicy set FILE ID SECTION NAME -- -x";

const Command* FindCommand(std::string_view name)
{
    const auto* const found =
        std::ranges::find_if(kCommands, [&](const Command* command) { return command->name == name; });
    return found == std::end(kCommands) ? nullptr : *found;
}

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
    [[nodiscard]] ParsedLine Parse(const std::vector<std::string>& arguments, Streams streams);

private:
    [[nodiscard]] std::string Unexpected(const std::string& argument) const;
    [[nodiscard]] std::string ComplaintAbout(const CLI::ParseError& error) const;
    [[nodiscard]] std::string Hint() const;

    const Command& m_command;
    CLI::App m_line;
    Action m_action;
};

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

ParsedLine Wrong(Streams streams, const std::string& complaint, const std::string& hint)
{
    streams.messages.Line("zupolicy: " + complaint);
    streams.messages.Line(hint);
    return {nullptr, ExitCode::Usage};
}

ParsedLine NoSuchCommand(const std::string& name, Streams streams)
{
    NearestName nearest(name);
    nearest.Offer("help");
    for (const Command* command : kCommands) {
        nearest.Offer(command->name);
    }
    return Wrong(streams, "no such command: " + Quoted(name) + nearest.Question(), kHelpHint);
}

ParsedLine Help(const std::vector<std::string>& arguments, Streams streams)
{
    if (arguments.size() > 2) {
        return Wrong(streams, "help explains one command at a time", kHelpHint);
    }
    if (arguments.size() == 1 || arguments[1] == "help") {
        streams.data << HelpOfProgram();
        return {};
    }
    const Command* const command = FindCommand(arguments[1]);
    if (command == nullptr) {
        return NoSuchCommand(arguments[1], streams);
    }
    streams.data << CommandParser(*command).Help();
    return {};
}

bool IsOption(const std::string& argument)
{
    return argument.size() > 1 && argument.front() == '-' && argument != "--";
}

/// The complaint about an argument that the command does not take.
std::string CommandParser::Unexpected(const std::string& argument) const
{
    if (!IsOption(argument)) {
        return "unexpected argument: " + Quoted(argument);
    }
    const std::string name = argument.substr(0, argument.find('='));
    NearestName nearest(name);
    for (const CLI::Option* option : m_line.get_options()) {
        for (const std::string& longName : option->get_lnames()) {
            nearest.Offer("--" + longName);
        }
    }
    return "no such option: " + Quoted(name) + nearest.Question();
}

/// What is wrong with the line: first of all an option that does not exist, which may be why something is missing.
std::string CommandParser::ComplaintAbout(const CLI::ParseError& error) const
{
    const std::vector<std::string> rest = m_line.remaining();
    const auto option = std::find_if(rest.begin(), rest.end(), IsOption);
    if (option != rest.end()) {
        return Unexpected(*option);
    }
    const bool isExtra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr && !rest.empty();
    return isExtra ? Unexpected(rest.front()) : error.what();
}

std::string CommandParser::Hint() const
{
    const std::vector<std::string> rest = m_line.remaining();
    if (m_command.takesAnyValue && std::ranges::any_of(rest, IsOption)) {
        return kDashHint;
    }
    return std::string("zupolicy help ") + m_command.name + " explains the command.";
}

ParsedLine CommandParser::Parse(const std::vector<std::string>& arguments, Streams streams)
{
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        m_line.parse(reversed);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) {
            return Wrong(streams, ComplaintAbout(error), Hint());
        }
        streams.data << Help();
        return {};
    }
    return {m_action, ExitCode::Ok};
}

}  // namespace

ParsedLine ParseCommandLine(const std::vector<std::string>& arguments, Streams streams)
{
    if (arguments.empty()) {
        return Wrong(streams, "a command is missing", kHelpHint);
    }
    const std::string& first = arguments.front();
    if (first == "help" || first == "--help" || first == "-h") {
        return Help(arguments, streams);
    }
    if (first == "--version") {
        streams.data << "zupolicy " ZUPM_VERSION "\n";
        return {};
    }
    const Command* const command = FindCommand(first);
    return command == nullptr ? NoSuchCommand(first, streams)
                              : CommandParser(*command).Parse({arguments.begin() + 1, arguments.end()}, streams);
}

}  // namespace zupm::tool
