#include "tools/zupolicy/rules/Document.h"

#include <algorithm>
#include <utility>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::rules {
namespace {

using tool::FileContents;
using tool::kNone;
using tool::Offset;

Node TextNode(std::string_view text, Offset at)
{
    Node node;
    node.isText = true;
    node.text = text;
    node.at = at;
    return node;
}

Node ObjectNode(Offset at)
{
    Node node;
    node.at = at;
    return node;
}

Node& Add(Node& parent, std::string_view name, Node value)
{
    return parent.members.emplace_back(Node::Member{name, std::move(value)}).value;
}

void Sort(Node& node)
{
    std::ranges::stable_sort(node.members, {}, &Node::Member::name);
}

/// The sections of a policy or task become members of the node.
template <class Record>
void AddSections(const FileContents& contents, const Record& record, Node& node)
{
    for (std::uint32_t number = record.firstSection; number < record.endSection; ++number) {
        const tool::Section& section = contents.sections[number];
        Node& added = Add(node, contents.Text(section.name), ObjectNode(section.at));
        for (std::uint32_t i = section.firstSetting; i != kNone; i = contents.settings[i].next) {
            const tool::Setting& setting = contents.settings[i];
            Add(added, contents.Text(setting.name), TextNode(contents.Text(setting.value), setting.at));
        }
        Sort(added);
    }
    Sort(node);
}

Node PoliciesOf(const FileContents& contents)
{
    Node policies = ObjectNode(contents.places.policyRootAt);
    for (const tool::Policy& policy : contents.policies) {
        AddSections(contents, policy, Add(policies, contents.Text(policy.softwareId), ObjectNode(policy.at)));
    }
    Sort(policies);
    return policies;
}

Node TaskNode(const FileContents& contents, const tool::Task& task)
{
    Node node = ObjectNode(task.at);
    const auto addField = [&](std::string_view name, tool::Piece value) {
        Add(node, name, TextNode(contents.Text(value), task.group));
    };
    addField("displayName", task.displayName);
    addField("type", task.type);
    addField("platforms", task.platforms);
    addField("priority", task.priority);
    addField("creator", task.creator);
    addField("version", task.version);
    AddSections(contents, task, Add(node, "sections", ObjectNode(task.at)));
    Sort(node);
    return node;
}

Node TasksOf(const FileContents& contents)
{
    std::vector<const tool::Task*> sorted;
    for (const tool::Task& task : contents.tasks) {
        sorted.push_back(&task);
    }
    const auto softwareIdOf = [&](const tool::Task* task) { return contents.Text(task->softwareId); };
    std::ranges::stable_sort(sorted, {}, softwareIdOf);
    Node tasks = ObjectNode(contents.places.taskRootAt);
    for (const tool::Task* const task : sorted) {
        if (tasks.members.empty() || tasks.members.back().name != softwareIdOf(task)) {
            Add(tasks, softwareIdOf(task), ObjectNode(task->at));
        }
        Add(tasks.members.back().value, contents.Text(task->taskId), TaskNode(contents, *task));
    }
    for (Node::Member& product : tasks.members) {
        Sort(product.value);
    }
    return tasks;
}

std::string Text(std::string_view name)
{
    return tool::Shortened(name);
}

/// What follows the policy or task in a description.
std::string Inside(const Path& path, std::size_t at)
{
    if (path.size() <= at) {
        return {};
    }
    return path.size() == at + 1 ? " section " + Text(path[at]) : " " + Text(path[at]) + "/" + Text(path[at + 1]);
}

std::string DescribeTask(const Path& path)
{
    if (path.size() == 1) {
        return "the tasks";
    }
    if (path.size() == 2) {
        return "the tasks of " + Text(path[1]);
    }
    const std::string task = "task " + Text(path[1]) + " " + Text(path[2]);
    if (path.size() == 3 || path[3] == "sections") {
        return task + Inside(path, 4);
    }
    return task + " " + Text(path[3]);
}

}  // namespace

const Node* Node::Find(std::string_view name) const
{
    const auto found = std::ranges::lower_bound(members, name, {}, &Member::name);
    return found == members.end() || found->name != name ? nullptr : &found->value;
}

Node DocumentOf(const FileContents& contents)
{
    Node file;
    Add(file, "policyVersion", TextNode(contents.policyVersion, contents.places.policyRootAt));
    Add(file, "taskVersion", TextNode(contents.taskVersion, contents.places.taskRootAt));
    Add(file, "assignmentList", TextNode(contents.assignmentList, contents.places.policyRootAt));
    Add(file, "policies", PoliciesOf(contents));
    Add(file, "tasks", TasksOf(contents));
    Sort(file);
    return file;
}

std::string Describe(const Path& path)
{
    if (path.empty()) {
        return "the file";
    }
    if (path[0] == "tasks") {
        return DescribeTask(path);
    }
    if (path[0] != "policies") {
        return Text(path[0]);
    }
    return path.size() == 1 ? "the policies" : "policy " + Text(path[1]) + Inside(path, 2);
}

std::string PointerOf(const Path& path)
{
    std::string pointer;
    for (const std::string_view name : path) {
        pointer += '/';
        for (const char c : name) {
            pointer += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
        }
    }
    return pointer;
}

ValueName ValueNameOf(const Path& path)
{
    if (path.size() == 4 && path[0] == "policies") {
        return {path[2], path[3], false};
    }
    if (path.size() == 4 && path[0] == "tasks" && path[3] != "sections") {
        return {{}, path[3], true};
    }
    if (path.size() == 6 && path[0] == "tasks") {
        return {path[4], path[5], true};
    }
    return {};
}

}  // namespace zupm::rules
