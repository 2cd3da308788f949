#include "CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <ostream>

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
    "\nzupolicy COMMAND --help explains one command.";

constexpr const char* kDashHint =
    "Put -- before a value that begins with a dash: zupolicy set FILE ID SECTION NAME -- -x";

/// Adds the commands to the parser. Each stores its options in `command` when the command line names it.
///
/// Lifetime  Lives until the parser is done: the parser writes into it.
class Grammar {
public:
    explicit Grammar(CLI::App& app)
    {
        AddShow(app);
        AddGet(app);
        AddSet(app);
        AddRemove(app);
        AddExportIni(app);
        AddCheck(app);
    }

    [[nodiscard]] std::optional<Command> Take() { return std::move(m_command); }

private:
    CLI::App& Add(CLI::App& app, const char* name, const char* description, const char* examples)
    {
        CLI::App& sub = *app.add_subcommand(name, description);
        sub.footer(std::string("\nExamples:\n") + examples);
        return sub;
    }

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
        sub.add_option("--output", edit.output, "Write here and leave FILE alone (default: replace FILE in one step)")
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

    void AddShow(CLI::App& app);
    void AddGet(CLI::App& app);
    void AddSet(CLI::App& app);
    void AddTaskFields(CLI::App& sub);
    void AddRemove(CLI::App& app);
    void AddExportIni(CLI::App& app);
    void AddCheck(CLI::App& app);

    ShowOptions m_show;
    GetOptions m_get;
    SetOptions m_set;
    RemoveOptions m_remove;
    ExportIniOptions m_exportIni;
    CheckOptions m_check;
    std::optional<Command> m_command;
};

void Grammar::AddShow(CLI::App& app)
{
    CLI::App& sub = Add(app, "show", "Print versions, policies, tasks, sections and settings as the file holds them",
                        "  zupolicy show policy.xml\n"
                        "  zupolicy show policy.xml PRODUCTA1000\n"
                        "  zupolicy show policy.xml PRODUCTA1000 --task '{task-1}' --json\n"
                        "  zupolicy show policy.xml --names");
    AddFile(sub, m_show.file);
    CLI::Option* id = sub.add_option("SOFTWARE-ID", m_show.softwareId, "Only this product's policy and tasks");
    sub.add_option("--task", m_show.taskId, "Only this task of the product")->type_name("TASK-ID")->needs(id);
    sub.add_flag("--names", m_show.namesOnly, "Leave out sections and settings");
    AddJson(sub, m_show.json);
    OnUse(sub, m_show);
}

void Grammar::AddGet(CLI::App& app)
{
    CLI::App& sub = Add(app, "get", "Print one setting's value",
                        "  zupolicy get policy.xml PRODUCTA1000 General Enabled\n"
                        "  zupolicy get policy.xml PRODUCTA1000 General Enabled --task '{task-1}'");
    AddFile(sub, m_get.file);
    AddTarget(sub, m_get.target);
    sub.add_option("SECTION", m_get.section, "The section")->required();
    sub.add_option("NAME", m_get.name, "The setting")->required();
    AddJson(sub, m_get.json);
    OnUse(sub, m_get);
}

void Grammar::AddSet(CLI::App& app)
{
    CLI::App& sub = Add(app, "set",
                        "Change one setting. A missing section or setting is added; a missing policy or task only with "
                        "--create. A value that is there already leaves FILE untouched",
                        "  zupolicy set policy.xml PRODUCTA1000 General Enabled 1\n"
                        "  zupolicy set policy.xml PRODUCTA1000 General Switch -- -x\n"
                        "  zupolicy set policy.xml PRODUCTC3000 General Enabled 1 --create --output new.xml\n"
                        "  zupolicy set policy.xml PRODUCTA1000 Plan Hour 3 --task '{task-9}' --create --type Scan");
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

void Grammar::AddRemove(CLI::App& app)
{
    CLI::App& sub =
        Add(app, "remove", "Remove a setting, a section (NAME left out), or a policy or task (SECTION left out)",
            "  zupolicy remove policy.xml PRODUCTA1000 General Enabled\n"
            "  zupolicy remove policy.xml PRODUCTA1000 General\n"
            "  zupolicy remove policy.xml PRODUCTA1000 --dry-run\n"
            "  zupolicy remove policy.xml PRODUCTA1000 --task '{task-1}'");
    AddFile(sub, m_remove.file);
    AddTarget(sub, m_remove.target);
    sub.add_option("SECTION", m_remove.section, "The section");
    sub.add_option("NAME", m_remove.name, "The setting");
    AddEdit(sub, m_remove.edit);
    OnUse(sub, m_remove);
}

void Grammar::AddExportIni(CLI::App& app)
{
    CLI::App& sub =
        Add(app, "export-ini", "Write a task's fields and settings into an INI file, which keeps its other lines",
            "  zupolicy export-ini policy.xml PRODUCTA1000 task.ini --task '{task-1}'");
    AddFile(sub, m_exportIni.file);
    AddTarget(sub, m_exportIni.target);
    sub.get_option("--task")->required();
    sub.add_option("INI-FILE", m_exportIni.iniFile, "The INI file, created when missing; - for standard output")->required();
    OnUse(sub, m_exportIni);
}

void Grammar::AddCheck(CLI::App& app)
{
    CLI::App& sub = Add(app, "check",
                        "Load policy files and print file:line:column: message for each that is broken, and a warning "
                        "for each entry that occurs twice; say nothing about a sound one",
                        "  zupolicy check policy.xml\n"
                        "  zupolicy check --verbose *.xml\n"
                        "  zupolicy check --json policy.xml");
    sub.add_option("FILE", m_check.files, "The policy files")->required();
    sub.add_flag("--verbose", m_check.verbose, "Print counts for each sound file");
    AddJson(sub, m_check.json);
    OnUse(sub, m_check);
}

bool MayBeDashedValue(const CLI::ParseError& error)
{
    return dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr ||
           dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
}

ParsedLine Report(const CLI::App& app, const CLI::ParseError& error, const std::vector<std::string>& arguments,
                  Streams streams)
{
    if (app.exit(error, streams.data, streams.messages) == 0) {
        return {std::nullopt, ExitCode::Ok};
    }
    const bool isSet = !arguments.empty() && arguments.front() == "set";
    if (isSet && MayBeDashedValue(error)) {
        streams.messages << kDashHint << '\n';
    }
    return {std::nullopt, ExitCode::Usage};
}

}  // namespace

ParsedLine ParseCommandLine(const std::vector<std::string>& arguments, Streams streams)
{
    CLI::App app(kDescription, "zupolicy");
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("zupolicy " ZUPM_VERSION));
    app.require_subcommand(1);
    // A value such as /var/lib must never be taken for an option, on either target.
    app.allow_windows_style_options(false);
    Grammar grammar(app);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        app.parse(reversed);
    } catch (const CLI::ParseError& error) {
        return Report(app, error, arguments, streams);
    }
    return {grammar.Take(), ExitCode::Ok};
}

}  // namespace zupm::tool
