#include "tools/zupolicy/model/EditRequest.h"

#include <cstddef>
#include <utility>

#include "tools/zupolicy/model/Change.h"

namespace zupm::model {
namespace {

/// Whether the component makes this section of a task by itself.
bool IsMadeByItself(const Entry& entry, std::string_view section)
{
    return entry.id.taskId && (section == "Task" || section == "General");
}

bool PutSection(Entry& entry, const std::string& name)
{
    if (IsMadeByItself(entry, name) || entry.sections.Find(name) != nullptr) {
        return false;
    }
    entry.sections.Add({name, {}});
    return true;
}

bool PutSetting(Entry& entry, const std::string& section, const std::string& name, const std::string& value)
{
    const std::optional<Repeated> repeated = entry.id.taskId ? RepeatedBy(section, name) : std::nullopt;
    if (repeated) {
        if (TextOf(entry, *repeated) != value) {
            throw Refusal{Refusal::Reason::Repeats, section, name};
        }
        return false;
    }
    Section& place = entry.sections.Add({section, {}});
    Setting* const existing = place.settings.Find(name);
    if (existing == nullptr) {
        place.settings.Add({name, value});
        return true;
    }
    const bool differs = existing->value != value;
    existing->value = value;
    return differs;
}

bool PutFields(Entry& entry, const EditRequest& edit)
{
    bool differs = false;
    for (std::size_t i = 0; i < edit.fields.size(); ++i) {
        if (edit.fields[i] && entry.fields[i] != *edit.fields[i]) {
            entry.fields[i] = *edit.fields[i];
            differs = true;
        }
    }
    return differs;
}

bool PutContent(Entry& entry, const EditRequest& edit)
{
    bool differs = PutFields(entry, edit);
    for (const Section& section : edit.sections) {
        differs = PutSection(entry, section.name) || differs;
        for (const Setting& setting : section.settings) {
            differs = PutSetting(entry, section.name, setting.name, setting.value) || differs;
        }
    }
    return differs;
}

bool RemoveSetting(Entry& entry, const EditRequest& edit)
{
    if (entry.id.taskId && RepeatedBy(edit.section, edit.name)) {
        throw Refusal{Refusal::Reason::Repeats, edit.section, edit.name};
    }
    Section* const section = entry.sections.Find(edit.section);
    return section != nullptr && section->settings.Remove(edit.name);
}

bool Create(const EditRequest& edit, std::optional<Entry>& state)
{
    const bool isNew = !state;
    if (isNew) {
        state = NewEntry(edit.id);
    }
    return PutContent(*state, edit) || isNew;
}

/// The entry with the content of the edit alone.
bool CreateExactly(const EditRequest& edit, std::optional<Entry>& state)
{
    Entry wanted = NewEntry(edit.id);
    static_cast<void>(PutContent(wanted, edit));
    if (state && Compare(&*state, &wanted).IsEmpty()) {
        return false;
    }
    if (state && edit.kind == EditRequest::Kind::OwnEntry) {
        throw Refusal{Refusal::Reason::Exists, {}, {}};
    }
    state = std::move(wanted);
    return true;
}

bool Remove(std::optional<Entry>& state)
{
    const bool existed = state.has_value();
    state.reset();
    return existed;
}

Entry& Existing(std::optional<Entry>& state)
{
    if (!state) {
        throw Refusal{Refusal::Reason::NoSuchEntry, {}, {}};
    }
    return *state;
}

}  // namespace

bool Make(const EditRequest& edit, std::optional<Entry>& state)
{
    switch (edit.kind) {
        case EditRequest::Kind::Setting:
            return PutSetting(Existing(state), edit.section, edit.name, edit.value);
        case EditRequest::Kind::Section:
            return PutSection(Existing(state), edit.section);
        case EditRequest::Kind::TaskFields:
            return PutFields(Existing(state), edit);
        case EditRequest::Kind::WithoutSetting:
            return state && RemoveSetting(*state, edit);
        case EditRequest::Kind::WithoutSection:
            return state && state->sections.Remove(edit.section);
        case EditRequest::Kind::WithoutEntry:
            return Remove(state);
        case EditRequest::Kind::Entry:
            return Create(edit, state);
        case EditRequest::Kind::ExactEntry:
        case EditRequest::Kind::OwnEntry:
            return CreateExactly(edit, state);
    }
    return false;
}

}  // namespace zupm::model
