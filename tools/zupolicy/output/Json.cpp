#include "output/Json.h"

#include <nlohmann/json.hpp>

namespace zupm::tool {
namespace {

// Members keep the order in which they are added, so the output reads like the file.
using Json = nlohmann::ordered_json;

/// A text that is not valid UTF-8, such as a file's name, must not end the command.
std::string Print(const Json& value)
{
    return value.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json SettingsJson(const std::vector<Setting>& settings)
{
    Json list = Json::array();
    for (const Setting& setting : settings) {
        list.push_back({{"name", setting.name}, {"value", setting.value}});
    }
    return list;
}

Json SectionsJson(const std::vector<Section>& sections)
{
    Json list = Json::array();
    for (const Section& section : sections) {
        list.push_back({{"name", section.name}, {"settings", SettingsJson(section.settings)}});
    }
    return list;
}

Json PolicyJson(const Policy& policy)
{
    return {{"softwareId", policy.softwareId}, {"version", policy.version}};
}

Json TaskJson(const Task& task)
{
    return {{"softwareId", task.softwareId},   {"taskId", task.taskId},
            {"displayName", task.displayName}, {"type", task.type},
            {"platforms", task.platforms},     {"priority", task.priority},
            {"creator", task.creator},         {"version", task.version}};
}

template <typename Record>
Json RecordsJson(const std::vector<Record>& records, Json (*fields)(const Record&), bool withSections)
{
    Json list = Json::array();
    for (const Record& record : records) {
        Json item = fields(record);
        if (withSections) {
            item["sections"] = SectionsJson(record.sections);
        }
        list.push_back(std::move(item));
    }
    return list;
}

Json TargetJson(const Target& target)
{
    Json json = {{"softwareId", target.softwareId}};
    if (target.taskId) {
        json["taskId"] = *target.taskId;
    }
    return json;
}

template <typename Value>
Json OrNull(const std::optional<Value>& value)
{
    return value ? Json(*value) : Json(nullptr);
}

Json ReportJson(const CheckReport& report)
{
    Json json = {{"file", report.file}, {"ok", report.ok}};
    if (!report.ok) {
        json["line"] = OrNull(report.line);
        json["column"] = OrNull(report.column);
        json["message"] = report.message;
        return json;
    }
    json["policies"] = report.counts.policies;
    json["tasks"] = report.counts.tasks;
    json["sections"] = report.counts.sections;
    json["settings"] = report.counts.settings;
    json["warnings"] = Json::array();
    for (const Duplicate& duplicate : report.duplicates) {
        json["warnings"].push_back(
            {{"line", duplicate.line}, {"column", duplicate.column}, {"message", duplicate.message}});
    }
    return json;
}

}  // namespace

std::string ContentsAsJson(const std::string& file, const FileContents& contents, bool withSections)
{
    return Print({{"file", file},
                  {"policyVersion", contents.policyVersion},
                  {"taskVersion", contents.taskVersion},
                  {"assignmentList", contents.assignmentList},
                  {"policies", RecordsJson(contents.policies, PolicyJson, withSections)},
                  {"tasks", RecordsJson(contents.tasks, TaskJson, withSections)}});
}

std::string ValueAsJson(const Target& target, const std::string& section, const Setting& setting)
{
    Json json = TargetJson(target);
    json["section"] = section;
    json["name"] = setting.name;
    json["value"] = setting.value;
    return Print(json);
}

std::string ChangeAsJson(const Change& change)
{
    Json json = TargetJson(change.target);
    json["new"] = change.createsTarget;
    json["section"] = OrNull(change.section);
    json["name"] = OrNull(change.name);
    json["before"] = OrNull(change.before);
    json["after"] = OrNull(change.after);
    json["changed"] = change.changed;
    json["written"] = OrNull(change.written);
    return Print(json);
}

std::string ReportsAsJson(const std::vector<CheckReport>& reports)
{
    Json list = Json::array();
    for (const CheckReport& report : reports) {
        list.push_back(ReportJson(report));
    }
    return Print(list);
}

}  // namespace zupm::tool
