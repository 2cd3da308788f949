#include "tools/zupolicy/report/Explain.h"

#include <string_view>
#include <vector>

#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/report/NearestName.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

std::string Nearest(const std::string& wanted, const std::vector<std::string>& names)
{
    NearestName nearest(wanted);
    for (const std::string& name : names) {
        nearest.Offer(name);
    }
    return nearest.Suggestion();
}

/// A task ID of the product; for a product that the file does not know at all, one that has tasks.
std::string NearestTask(const zupm::PolicyFile& file, const Target& target)
{
    const std::vector<std::string> tasks = file.TaskIds(target.softwareId);
    const bool isKnown = !tasks.empty() || file.FindPolicy(target.softwareId);
    return isKnown ? Nearest(*target.taskId, tasks) : Nearest(target.softwareId, file.TaskSoftwareIds());
}

/// Calls `call` with the policy or task.
template <class Call>
std::string WithEntry(const zupm::PolicyFile& file, const Target& target, const Call& call)
{
    return target.taskId ? call(file.Task(target.softwareId, *target.taskId)) : call(file.Policy(target.softwareId));
}

std::string Suggestion(const zupm::PolicyFile& file, result::Code code, const Sought& sought)
{
    switch (code) {
        case result::PolicyNotFound:
            return Nearest(sought.target.softwareId, file.PolicyIds());
        case result::TaskNotFound:
            return NearestTask(file, sought.target);
        case result::SectionNotFound:
            return WithEntry(file, sought.target,
                             [&](const auto& entry) { return Nearest(*sought.section, entry.SectionNames()); });
        case result::SettingNotFound:
            return WithEntry(file, sought.target, [&](const auto& entry) {
                return Nearest(*sought.name, entry.Section(*sought.section).Names());
            });
        default:
            return {};
    }
}

/// The problem with the name of the missing element, when that can be found out.
Problem WithMissingElement(Problem problem, const Sought& sought)
{
    try {
        const std::string_view missing = MissingElement(ReadContents(sought.file).places, sought.target);
        if (!missing.empty()) {
            problem.message =
                Describe(sought.target) + ": The file has no " + std::string(missing) + " element to put it in.";
            problem.hint.clear();
        }
    } catch (const Failure&) {
        return problem;
    }
    return problem;
}

}  // namespace

std::string_view MissingElement(const Places& places, const Target& target)
{
    if (target.taskId) {
        return places.taskRoot ? std::string_view() : "TaskRoot";
    }
    if (!places.policyRoot) {
        return "PolicyRoot";
    }
    if (!places.policyGroup) {
        return "PolicyGroup";
    }
    return places.policy ? std::string_view() : "Policy";
}

Problem Explained(Problem problem, const Sought& sought)
{
    const std::string about = Describe(sought.target) + ": ";
    if (problem.code == result::SectionNotFound) {
        problem.message =
            about + "section " + Quoted(*sought.section) + ": " + client::SentenceOf(result::SectionNotFound);
    } else if (problem.code == result::SettingNotFound) {
        problem.message = about + "setting " + Quoted(*sought.name) + " of section " + Quoted(*sought.section) + ": " +
                          client::SentenceOf(result::SettingNotFound);
    } else if (problem.code == result::ElementMissing) {
        return WithMissingElement(std::move(problem), sought);
    }
    return problem;
}

std::string ComplaintOfIds(const std::string& softwareId, const std::optional<std::string>& taskId)
{
    return softwareId.empty() ? "the software ID is empty" : taskId && taskId->empty() ? "the task ID is empty" : "";
}

std::string SuggestionFor(result::Code code, const Sought& sought)
{
    if (std::string complaint = ComplaintOfIds(sought.target.softwareId, sought.target.taskId); !complaint.empty()) {
        return complaint;
    }
    try {
        return Suggestion(model::OpenToRead(sought.file), code, sought);
    } catch (const std::exception&) {
        return {};  // a suggestion is a courtesy
    }
}

}  // namespace zupm::tool
