#include "tools/zupolicy/report/Explain.h"

#include <algorithm>
#include <string_view>

#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/report/NearestName.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

/// Where an entry's sections are.
struct SectionRange {
    std::uint32_t first = 0;
    std::uint32_t end = 0;
};

SectionRange SectionsOf(const FileContents& contents, const Target& target)
{
    for (const Task& task : contents.tasks) {
        if (target.taskId && contents.Text(task.softwareId) == target.softwareId &&
            contents.Text(task.taskId) == *target.taskId) {
            return {task.firstSection, task.endSection};
        }
    }
    for (const Policy& policy : contents.policies) {
        if (!target.taskId && contents.Text(policy.softwareId) == target.softwareId) {
            return {policy.firstSection, policy.endSection};
        }
    }
    return {};
}

NearestName NearPolicy(const FileContents& contents, const Target& target)
{
    NearestName nearest(target.softwareId);
    for (const Policy& policy : contents.policies) {
        nearest.Offer(contents.Text(policy.softwareId));
    }
    return nearest;
}

/// A task ID of the product; for a product that the file does not know at all, one that has tasks.
NearestName NearTask(const FileContents& contents, const Target& target)
{
    const auto isOfProduct = [&](const auto& record) { return contents.Text(record.softwareId) == target.softwareId; };
    const bool isKnown = std::any_of(contents.tasks.begin(), contents.tasks.end(), isOfProduct) ||
                         std::any_of(contents.policies.begin(), contents.policies.end(), isOfProduct);
    NearestName nearest(isKnown ? *target.taskId : target.softwareId);
    for (const Task& task : contents.tasks) {
        if (!isKnown) {
            nearest.Offer(contents.Text(task.softwareId));
        } else if (isOfProduct(task)) {
            nearest.Offer(contents.Text(task.taskId));
        }
    }
    return nearest;
}

NearestName NearSection(const FileContents& contents, const Sought& sought)
{
    NearestName nearest(*sought.section);
    const SectionRange range = SectionsOf(contents, sought.target);
    for (std::uint32_t number = range.first; number < range.end; ++number) {
        nearest.Offer(contents.Text(contents.sections[number].name));
    }
    return nearest;
}

NearestName NearSetting(const FileContents& contents, const Sought& sought)
{
    NearestName nearest(*sought.name);
    const SectionRange range = SectionsOf(contents, sought.target);
    for (std::uint32_t section = range.first; section < range.end; ++section) {
        if (contents.Text(contents.sections[section].name) != *sought.section) {
            continue;
        }
        std::uint32_t number = contents.sections[section].firstSetting;
        for (; number != kNone; number = contents.settings[number].next) {
            nearest.Offer(contents.Text(contents.settings[number].name));
        }
    }
    return nearest;
}

std::string Suggestion(const FileContents& contents, result::Code code, const Sought& sought)
{
    switch (code) {
        case result::PolicyNotFound:
            return NearPolicy(contents, sought.target).Question();
        case result::TaskNotFound:
            return sought.target.taskId ? NearTask(contents, sought.target).Question() : std::string();
        case result::SectionNotFound:
            return sought.section ? NearSection(contents, sought).Question() : std::string();
        case result::SettingNotFound:
            return sought.section && sought.name ? NearSetting(contents, sought).Question() : std::string();
        default:
            return {};
    }
}

std::string MissingElementText(const Sought& sought, const std::string& otherwise)
{
    try {
        const std::string_view missing = MissingElement(ReadContents(sought.file).places, sought.target);
        return missing.empty() ? otherwise : "The file has no " + std::string(missing) + " element to put it in.";
    } catch (const Failure&) {
        return otherwise;
    }
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

CallError Explained(const CallError& error, const Sought& sought)
{
    const std::string subject = sought.file + ": " + Describe(sought.target);
    if (error.Result() == result::SectionNotFound && sought.section) {
        return {error.Result(), subject + ": section " + Quoted(*sought.section), error.Description()};
    }
    if (error.Result() == result::SettingNotFound && sought.section && sought.name) {
        return {error.Result(),
                subject + ": setting " + Quoted(*sought.name) + " of section " + Quoted(*sought.section),
                error.Description()};
    }
    if (error.Result() == result::ElementMissing) {
        return {error.Result(), subject, MissingElementText(sought, error.Description())};
    }
    return error;
}

std::string SuggestionFor(const CallError& error, const Sought& sought)
{
    if (error.Code() != ExitCode::NotFound) {
        return {};
    }
    try {
        return Suggestion(ReadContents(sought.file), error.Result(), sought);
    } catch (const Failure&) {
        return {};  // a suggestion is a courtesy
    }
}

std::string SuggestionFor(const FileContents& contents, const Target& target)
{
    return (target.taskId ? NearTask(contents, target) : NearPolicy(contents, target)).Question();
}

}  // namespace zupm::tool
