#include "tools/zupolicy/model/WriteEntry.h"

#include <charconv>
#include <cstdint>
#include <string>

#include "tools/zupolicy/model/MakeObjects.h"
#include "tools/zupolicy/model/ReadFile.h"

namespace zupm::model {
namespace {

/// A section of that name without settings. There is no call for it, but a section stays when its last setting goes.
template <class Target>
void AddEmptySection(Target& target, const std::string& name)
{
    target.Set(name, "New", "");
    target.Remove(name, "New");
}

/// Takes every section of that name away: a removed one may hide another.
template <class Target>
void RemoveSections(Target& target, const std::string& name)
{
    while (target.Contains(name)) {
        target.Remove(name);
    }
}

template <class Target>
void RemoveSettings(Target& target, const std::string& section, const std::string& name)
{
    while (target.FindStored(section, name)) {
        target.Remove(section, name);
    }
}

template <class Target>
void MakeStep(Target& target, const EntryChange::Step& step)
{
    if (step.section && step.section->isAdded) {
        AddEmptySection(target, step.section->section);
    } else if (step.section) {
        RemoveSections(target, step.section->section);
    } else if (step.setting->after) {
        target.Set(step.setting->section, step.setting->name, *step.setting->after);
    } else {
        RemoveSettings(target, step.setting->section, step.setting->name);
    }
}

void PutField(Task& task, Field field, const std::string& value)
{
    std::int32_t priority = 0;
    switch (field) {
        case Field::DisplayName:
            task.SetDisplayName(value);
            break;
        case Field::Type:
            task.SetType(value);
            break;
        case Field::Platforms:
            task.SetPlatforms(value);
            break;
        case Field::Priority:
            std::from_chars(value.data(), value.data() + value.size(), priority);
            task.SetPriority(priority);
            break;
        case Field::Creator:
            task.SetCreator(value);
            break;
    }
}

void PutFields(Policy& /*policy*/, const EntryChange& /*change*/) {}

void PutFields(Task& task, const EntryChange& change)
{
    for (const FieldChange& field : change.fields) {
        PutField(task, field.field, field.after);
    }
}

template <class Target>
void AddWith(const PolicyFile& file, Target target, const EntryChange& change)
{
    PutFields(target, change);
    for (const EntryChange::Step& step : change.steps) {
        MakeStep(target, step);
    }
    file.Add(target);
}

void Remove(const PolicyFile& file, const EntryId& id)
{
    if (id.taskId) {
        file.RemoveTask(id.softwareId, *id.taskId);
    } else {
        file.RemovePolicy(id.softwareId);
    }
}

/// An entry with the same ID that comes before the one that was written hides it: such a copy goes. What was written is
/// found in the end, because it is never the one that goes. Returns how many went.
std::size_t RemoveWhatHides(const PolicyFile& file, const Entry& written)
{
    for (std::size_t removed = 0;; ++removed) {
        std::optional<Entry> found = Find(file, written.id);
        if (found) {
            DropRepeated(*found);
            if (Compare(&*found, &written).IsEmpty()) {
                return removed;
            }
        }
        Remove(file, written.id);
    }
}

}  // namespace

std::size_t Write(const PolicyFile& file, const EntryChange& change, const std::optional<Entry>& after)
{
    if (change.kind == EntryChange::Kind::Removed) {
        while (Find(file, change.id)) {
            Remove(file, change.id);
        }
        return 0;
    }
    // A new entry is the change from an empty one to what it becomes.
    const Entry empty = NewEntry(change.id);
    const bool isNew = change.kind == EntryChange::Kind::Added;
    const EntryChange steps = isNew ? Compare(&empty, &*after) : change;
    const EntryId& id = change.id;
    if (id.taskId) {
        AddWith(file, isNew ? MakeTask(id) : file.Task(id.softwareId, *id.taskId), steps);
    } else {
        AddWith(file, isNew ? MakePolicy(id) : file.Policy(id.softwareId), steps);
    }
    return RemoveWhatHides(file, *after);
}

}  // namespace zupm::model
