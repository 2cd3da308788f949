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
    "Data go to standard output, everything else to standard error; texts are UTF-8.";

constexpr const char* kFooter =
    "\nExit codes:\n"
    "  0  done\n"
    "  1  the policy, task, section or setting is not in the file\n"
    "  2  the command line is wrong\n"
    "  3  a file cannot be read, parsed or written\n"
    "  4  anything else that failed\n"
    "  5  the file was changed by something else meanwhile\n"
    "  6  another process was editing the file for too long\n"
    "  7  the file is written, but something failed afterwards\n"
    "\nExamples:\n"
    "  zupolicy show policy.xml\n"
    "  zupolicy get policy.xml PRODUCTA1000 General Enabled\n"
    "  zupolicy set policy.xml PRODUCTA1000 General Enabled 0 --dry-run\n"
    "\nzupolicy help COMMAND explains one command.";

constexpr const char* kHelpHint = "zupolicy help lists the commands; zupolicy help COMMAND explains one.";

constexpr const char* kDashHint =
    "Put -- before a value that begins with a dash: zupolicy set FILE ID SECTION NAME -- -x";

/// What one command takes. The parsed options are stored in `command` when the parser is done.
///
/// Lifetime  Lives until the parser is done: the parser writes into it.
class Grammar {
public:
    [[nodiscard]] std::optional<Command> Take() { return std::move(m_command); }

    void AddShow(CLI::App& sub);
    void AddGet(CLI::App& sub);
    void AddSet(CLI::App& sub);
    void AddRemove(CLI::App& sub);
    void AddExportIni(CLI::App& sub);
    void AddCheck(CLI::App& sub);

private:
    template <typename Options>
    void OnUse(CLI::App& sub, const Options& options)
    {
        sub.callback([this, &options] { m_command = options; });
    }

    static void AddFile(CLI::App& sub, std::string& file)
    {
        sub.add_option("FILE", file, "The policy file")->required();
    }

    static void AddTarget(CLI::App& sub, Target& target)
    {
        sub.add_option("SOFTWARE-ID", target.softwareId, "The product")->required();
        sub.add_option("--task", target.taskId, "Work on this task of the product, not on its policy")
            ->type_name("TASK-ID");
    }

    static void AddJson(CLI::App& sub, bool& json) { sub.add_flag("--json", json, "Print JSON"); }

    static void AddEdit(CLI::App& sub, EditOptions& edit)
    {
        sub.add_option("--output", edit.output,
                       "Write here, - for standard output, and leave FILE alone (default: replace FILE in one step)")
            ->type_name("PATH");
        sub.add_flag("--dry-run", edit.dryRun, "Print what would change and write nothing");
        sub.add_flag("--force", edit.force, "Write the file even when something else changed it meanwhile");
        sub.add_flag("--json", edit.json, "Print the change as JSON");
        AddLock(sub, edit.lock);
    }

    static void AddLock(CLI::App& sub, LockOptions& lock)
    {
        sub.add_option("--lock-timeout", lock.timeoutSeconds,
                       "Wait so long for another process to be done (default: 10)")
            ->type_name("SECONDS")
            ->check(CLI::Range(0, 86'400));
    }

    void AddTaskFields(CLI::App& sub);

    ShowOptions m_show;
    GetOptions m_get;
    SetOptions m_set;
    RemoveOptions m_remove;
    ExportIniOptions m_exportIni;
    CheckOptions m_check;
    std::optional<Command> m_command;
};

void Grammar::AddShow(CLI::App& sub)
{
    AddFile(sub, m_show.file);
    CLI::Option* id = sub.add_option("SOFTWARE-ID", m_show.softwareId, "Only this product's policy and tasks");
    sub.add_option("--task", m_show.taskId, "Only this task of the product")->type_name("TASK-ID")->needs(id);
    sub.add_flag("--names", m_show.namesOnly, "Leave out sections and settings");
    AddJson(sub, m_show.json);
    OnUse(sub, m_show);
}

void Grammar::AddGet(CLI::App& sub)
{
    AddFile(sub, m_get.file);
    AddTarget(sub, m_get.target);
    sub.add_option("SECTION", m_get.section, "The section")->required();
    sub.add_option("NAME", m_get.name, "The setting")->required();
    AddJson(sub, m_get.json);
    OnUse(sub, m_get);
}

void Grammar::AddSet(CLI::App& sub)
{
    AddFile(sub, m_set.file);
    AddTarget(sub, m_set.target);
    sub.add_option("SECTION", m_set.section, "The section")->required();
    sub.add_option("NAME", m_set.name, "The setting")->required();
    sub.add_option("VALUE", m_set.value, "Its new value, which may be empty")->required();
    sub.add_flag("--create", m_set.create, "Add the policy or task when the file does not have it");
    AddTaskFields(sub);
    AddEdit(sub, m_set.edit);
    OnUse(sub, m_set);
}

void Grammar::AddTaskFields(CLI::App& sub)
{
    const auto field = [&](const char* name, auto& value, const char* description) {
        sub.add_option(name, value, description)->group("Fields of the task")->needs(sub.get_option("--task"));
    };
    field("--display-name", m_set.fields.displayName, "Name shown to users (a new task: its ID)");
    field("--type", m_set.fields.type, "Type of the task");
    field("--platforms", m_set.fields.platforms, "Platforms that it is for");
    field("--creator", m_set.fields.creator, "Who created it");
    field("--priority", m_set.fields.priority, "Priority, a whole number (a new task: 0)");
}

void Grammar::AddRemove(CLI::App& sub)
{
    AddFile(sub, m_remove.file);
    AddTarget(sub, m_remove.target);
    sub.add_option("SECTION", m_remove.section, "The section");
    sub.add_option("NAME", m_remove.name, "The setting");
    AddEdit(sub, m_remove.edit);
    OnUse(sub, m_remove);
}

void Grammar::AddExportIni(CLI::App& sub)
{
    AddFile(sub, m_exportIni.file);
    AddTarget(sub, m_exportIni.target);
    sub.get_option("--task")->required();
    sub.add_option("INI-FILE", m_exportIni.iniFile, "The INI file, created when missing; - for standard output")
        ->required();
    OnUse(sub, m_exportIni);
}

void Grammar::AddCheck(CLI::App& sub)
{
    sub.add_option("FILE", m_check.files, "The policy files")->required();
    sub.add_flag("--verbose", m_check.verbose, "Print counts for each sound file");
    sub.add_flag("--strict", m_check.strict, "Let a warning fail, too");
    AddJson(sub, m_check.json);
    OnUse(sub, m_check);
}

/// The commands, in the order in which the help lists them.
struct CommandRow {
    const char* name;
    const char* description;
    const char* examples;
    void (Grammar::*fill)(CLI::App&);
};

constexpr CommandRow kCommands[] = {
    {"show", "Print versions, policies, tasks, sections and settings as the file holds them",
     "  zupolicy show policy.xml\n"
     "  zupolicy show policy.xml PRODUCTA1000\n"
     "  zupolicy show policy.xml PRODUCTA1000 --task '{task-1}' --json\n"
     "  zupolicy show policy.xml --names",
     &Grammar::AddShow},
    {"get", "Print one setting's value",
     "  zupolicy get policy.xml PRODUCTA1000 General Enabled\n"
     "  zupolicy get policy.xml PRODUCTA1000 General Enabled --task '{task-1}'",
     &Grammar::AddGet},
    {"set",
     "Change one setting. A missing section or setting is added; a missing policy or task only with "
     "--create. A value that is there already leaves FILE untouched",
     "  zupolicy set policy.xml PRODUCTA1000 General Enabled 1\n"
     "  zupolicy set policy.xml PRODUCTA1000 General Switch -- -x\n"
     "  zupolicy set policy.xml PRODUCTC3000 General Enabled 1 --create --output new.xml\n"
     "  zupolicy set policy.xml PRODUCTA1000 Plan Hour 3 --task '{task-9}' --create --type Scan",
     &Grammar::AddSet},
    {"remove", "Remove a setting, a section (NAME left out), or a policy or task (SECTION left out)",
     "  zupolicy remove policy.xml PRODUCTA1000 General Enabled\n"
     "  zupolicy remove policy.xml PRODUCTA1000 General\n"
     "  zupolicy remove policy.xml PRODUCTA1000 --dry-run\n"
     "  zupolicy remove policy.xml PRODUCTA1000 --task '{task-1}'",
     &Grammar::AddRemove},
    {"export-ini", "Write a task's fields and settings into an INI file, which keeps its other lines",
     "  zupolicy export-ini policy.xml PRODUCTA1000 task.ini --task '{task-1}'", &Grammar::AddExportIni},
    {"check",
     "Load policy files and print file:line:column: message for each that is broken, and warnings about what is odd in "
     "the others; say nothing about a sound one",
     "  zupolicy check policy.xml\n"
     "  zupolicy check --verbose *.xml\n"
     "  zupolicy check --json policy.xml",
     &Grammar::AddCheck},
};

const CommandRow* FindCommand(std::string_view name)
{
    const auto* const row = std::find_if(std::begin(kCommands), std::end(kCommands),
                                         [&](const CommandRow& command) { return command.name == name; });
    return row == std::end(kCommands) ? nullptr : row;
}

/// The parser of one command. It is a parser of its own, not a part of the program's: as a part it would take the
/// argument "++" for its end.
void SetUp(CLI::App& app, const CommandRow& row, Grammar& grammar)
{
    app.footer(std::string("\nExamples:\n") + row.examples);
    // A value such as /var/lib must never be taken for an option, on either target.
    app.allow_windows_style_options(false);
    (grammar.*row.fill)(app);
}

std::string HelpOfProgram()
{
    CLI::App app(kDescription, "zupolicy");
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("zupolicy " ZUPM_VERSION));
    app.require_subcommand(1);
    for (const CommandRow& row : kCommands) {
        app.add_subcommand(row.name, row.description);
    }
    app.add_subcommand("help", "Explain the program, or one command: zupolicy help COMMAND");
    return app.help();
}

std::string HelpOf(const CommandRow& row)
{
    Grammar grammar;
    CLI::App app(row.description, std::string("zupolicy ") + row.name);
    SetUp(app, row, grammar);
    return app.help();
}

ParsedLine Wrong(Streams streams, const std::string& complaint, const std::string& hint)
{
    streams.messages.Line("zupolicy: " + complaint);
    streams.messages.Line(hint);
    return {std::nullopt, ExitCode::Usage};
}

ParsedLine NoSuchCommand(const std::string& name, Streams streams)
{
    NearestName nearest(name);
    nearest.Offer("help");
    for (const CommandRow& row : kCommands) {
        nearest.Offer(row.name);
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
    const CommandRow* const row = FindCommand(arguments[1]);
    if (row == nullptr) {
        return NoSuchCommand(arguments[1], streams);
    }
    streams.data << HelpOf(*row);
    return {};
}

bool IsOption(const std::string& argument)
{
    return argument.size() > 1 && argument.front() == '-' && argument != "--";
}

/// The complaint about an argument that the command does not take.
std::string Unexpected(const CLI::App& app, const std::string& argument)
{
    if (!IsOption(argument)) {
        return "unexpected argument: " + Quoted(argument);
    }
    const std::string name = argument.substr(0, argument.find('='));
    NearestName nearest(name);
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& longName : option->get_lnames()) {
            nearest.Offer("--" + longName);
        }
    }
    return "no such option: " + Quoted(name) + nearest.Question();
}

/// What is wrong with the line: first of all an option that does not exist, which may be why something is missing.
std::string ComplaintAbout(const CLI::App& app, const CLI::ParseError& error)
{
    const std::vector<std::string> rest = app.remaining();
    const auto option = std::find_if(rest.begin(), rest.end(), IsOption);
    if (option != rest.end()) {
        return Unexpected(app, *option);
    }
    const bool isExtra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr && !rest.empty();
    return isExtra ? Unexpected(app, rest.front()) : error.what();
}

bool MayBeDashedValue(const CLI::App& app, const CommandRow& row)
{
    const std::vector<std::string> rest = app.remaining();
    return std::string_view(row.name) == "set" && std::any_of(rest.begin(), rest.end(), IsOption);
}

ParsedLine Report(const CLI::App& app, const CommandRow& row, const CLI::ParseError& error, Streams streams)
{
    if (error.get_exit_code() == 0) {
        streams.data << app.help();
        return {};
    }
    const std::string hint = std::string("zupolicy help ") + row.name + " explains the command.";
    return Wrong(streams, ComplaintAbout(app, error), MayBeDashedValue(app, row) ? kDashHint : hint);
}

/// What the parser cannot see: two ways to use standard output at once.
std::string ConflictIn(const Command& command)
{
    const auto* const set = std::get_if<SetOptions>(&command);
    const auto* const remove = std::get_if<RemoveOptions>(&command);
    const EditOptions* const edit = set != nullptr ? &set->edit : remove != nullptr ? &remove->edit : nullptr;
    if (edit == nullptr || !edit->GoesToStandardOutput() || (!edit->json && !edit->dryRun)) {
        return {};
    }
    return std::string("--output - writes the document to standard output and excludes ") +
           (edit->json ? "--json" : "--dry-run");
}

ParsedLine ParseCommand(const CommandRow& row, const std::vector<std::string>& arguments, Streams streams)
{
    Grammar grammar;
    CLI::App app(row.description, std::string("zupolicy ") + row.name);
    SetUp(app, row, grammar);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend() - 1);
        app.parse(reversed);
    } catch (const CLI::ParseError& error) {
        return Report(app, row, error, streams);
    }
    std::optional<Command> command = grammar.Take();
    if (const std::string conflict = ConflictIn(*command); !conflict.empty()) {
        return Wrong(streams, conflict, kHelpHint);
    }
    return {std::move(command), ExitCode::Ok};
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
    const CommandRow* const row = FindCommand(first);
    return row == nullptr ? NoSuchCommand(first, streams) : ParseCommand(*row, arguments, streams);
}

}  // namespace zupm::tool
