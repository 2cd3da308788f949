#include "tools/zupolicy/model/Change.h"

#include <cstddef>
#include <utility>

namespace zupm::model {
namespace {

void CompareFields(const Fields& before, const Fields& after, EntryChange& change)
{
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i] != after[i]) {
            change.fields.push_back({static_cast<Field>(i), before[i], after[i]});
        }
    }
}

/// The steps within a section of the old state; `after` is null when it goes.
void CompareSection(const Section& before, const Section* after, EntryChange& change)
{
    if (after == nullptr) {
        change.steps.push_back({{}, SectionChange{before.name, false, before.settings.Size()}});
        return;
    }
    for (const Setting& setting : before.settings) {
        const Setting* const kept = after->settings.Find(setting.name);
        if (kept == nullptr) {
            change.steps.push_back({SettingChange{before.name, setting.name, setting.value, {}}, {}});
        } else if (kept->value != setting.value) {
            change.steps.push_back({SettingChange{before.name, setting.name, setting.value, kept->value}, {}});
        }
    }
    for (const Setting& setting : after->settings) {
        if (before.settings.Find(setting.name) == nullptr) {
            change.steps.push_back({SettingChange{before.name, setting.name, {}, setting.value}, {}});
        }
    }
}

void AddSection(const Section& section, EntryChange& change)
{
    if (section.settings.IsEmpty()) {
        change.steps.push_back({{}, SectionChange{section.name, true, 0}});
    }
    for (const Setting& setting : section.settings) {
        change.steps.push_back({SettingChange{section.name, setting.name, {}, setting.value}, {}});
    }
}

}  // namespace

EntryChange Compare(const Entry* before, const Entry* after)
{
    if (before == nullptr) {
        return {EntryChange::Kind::Added, after->id, after, {}, {}};
    }
    if (after == nullptr) {
        return {EntryChange::Kind::Removed, before->id, before, {}, {}};
    }
    EntryChange change{EntryChange::Kind::Changed, before->id, nullptr, {}, {}};
    CompareFields(before->fields, after->fields, change);
    for (const Section& section : before->sections) {
        CompareSection(section, after->sections.Find(section.name), change);
    }
    for (const Section& section : after->sections) {
        if (before->sections.Find(section.name) == nullptr) {
            AddSection(section, change);
        }
    }
    return change;
}

}  // namespace zupm::model
