#include "tools/zupolicy/model/Entry.h"

#include <algorithm>
#include <iterator>

namespace zupm::model {
namespace {

struct Row {
    std::string_view section;
    std::string_view name;
    Repeated repeated;
};

constexpr Row kRepeating[] = {
    {"Task", "TaskID", {true, {}}},
    {"Task", "TaskName", {false, Field::DisplayName}},
    {"Task", "TaskType", {false, Field::Type}},
    {"Task", "Platforms", {false, Field::Platforms}},
    {"Task", "TaskPriority", {false, Field::Priority}},
    {"General", "TaskType", {false, Field::Type}},
    {"General", "wTaskType", {false, Field::Type}},
};

}  // namespace

std::string Describe(const EntryId& id)
{
    return id.taskId ? "task " + id.softwareId + " " + *id.taskId : "policy " + id.softwareId;
}

Entry NewEntry(const EntryId& id)
{
    Entry entry{id, {}, {}};
    if (id.taskId) {
        Get(entry.fields, Field::DisplayName) = *id.taskId;
        Get(entry.fields, Field::Priority) = "0";
    }
    return entry;
}

std::optional<Repeated> RepeatedBy(std::string_view section, std::string_view name)
{
    const auto* const row =
        std::ranges::find_if(kRepeating, [&](const Row& each) { return each.section == section && each.name == name; });
    return row == std::end(kRepeating) ? std::nullopt : std::optional(row->repeated);
}

void ForEachRepeating(Field field, const std::function<void(std::string_view, std::string_view)>& call)
{
    for (const Row& row : kRepeating) {
        if (!row.repeated.isId && row.repeated.field == field) {
            call(row.section, row.name);
        }
    }
}

const std::string& TextOf(const Entry& task, const Repeated& repeated)
{
    return repeated.isId ? *task.id.taskId : Get(task.fields, repeated.field);
}

void DropRepeated(Entry& entry)
{
    if (!entry.id.taskId) {
        return;
    }
    for (const Row& row : kRepeating) {
        if (Section* const section = entry.sections.Find(row.section); section != nullptr) {
            section->settings.Remove(row.name);
        }
    }
    for (const Row& row : kRepeating) {
        const Section* const section = entry.sections.Find(row.section);
        if (section != nullptr && section->settings.IsEmpty()) {
            entry.sections.Remove(row.section);
        }
    }
}

}  // namespace zupm::model
