// Differences as edits in JSON.
#include <cstddef>

#include "tools/zupolicy/report/ChangeReport.h"

namespace zupm::tool {
namespace {

using model::Entry;
using model::EntryChange;
using model::EntryId;

void Begin(JsonWriter& json, std::string_view edit)
{
    json.BeginDocument();
    json.Member("edit", edit);
}

void WriteId(JsonWriter& json, const EntryId& id)
{
    json.Member("softwareId", id.softwareId);
    if (id.taskId) {
        json.Member("taskId", *id.taskId);
    }
}

void WriteSetting(JsonWriter& json, const EntryId& id, const model::SettingChange& change)
{
    Begin(json, change.after ? "set" : "absent");
    WriteId(json, id);
    json.Member("section", change.section);
    json.Member("name", change.name);
    if (change.after) {
        json.Member("value", *change.after);
    }
    json.Key("before").TextOrNull(change.before);
    json.EndObject();
}

void WriteSection(JsonWriter& json, const EntryId& id, const model::SectionChange& change)
{
    Begin(json, change.isAdded ? "set" : "absent");
    WriteId(json, id);
    json.Member("section", change.section);
    json.EndObject();
}

void WriteFields(JsonWriter& json, const EntryChange& change)
{
    const auto write = [&](const char* name, const std::string model::FieldChange::*value) {
        json.Key(name).BeginObject();
        for (const model::FieldChange& field : change.fields) {
            json.Member(model::kFieldNames[static_cast<std::size_t>(field.field)], field.*value);
        }
        json.EndObject();
    };
    Begin(json, "set");
    WriteId(json, change.id);
    write("fields", &model::FieldChange::after);
    write("before", &model::FieldChange::before);
    json.EndObject();
}

void WriteSections(JsonWriter& json, const Entry& entry)
{
    json.Key("sections").BeginArray();
    for (const model::Section& section : entry.sections) {
        json.BeginObject();
        json.Member("name", section.name);
        json.Key("settings").BeginArray();
        for (const model::Setting& setting : section.settings) {
            json.BeginObject();
            json.Member("name", setting.name);
            json.Member("value", setting.value);
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    }
    json.EndArray();
}

void WriteEntry(JsonWriter& json, const EntryChange& change)
{
    const bool isAdded = change.kind == EntryChange::Kind::Added;
    Begin(json, isAdded ? "create" : "absent");
    WriteId(json, change.id);
    if (isAdded) {
        for (std::size_t i = 0; change.id.taskId && i < model::kFieldNames.size(); ++i) {
            json.Member(model::kFieldNames[i], change.entry->fields[i]);
        }
        WriteSections(json, *change.entry);
    }
    json.EndObject();
}

}  // namespace

void WriteAsEdit(JsonWriter& json, const FileDifference& difference)
{
    Begin(json, "unsupported");
    json.Member("what", difference.what);
    json.Member("before", difference.before);
    json.Member("after", difference.after);
    json.EndObject();
}

void WriteAsEdits(JsonWriter& json, const EntryChange& change)
{
    if (change.entry != nullptr) {
        WriteEntry(json, change);
    }
    if (!change.fields.empty()) {
        WriteFields(json, change);
    }
    for (const EntryChange::Step& step : change.steps) {
        if (step.setting) {
            WriteSetting(json, change.id, *step.setting);
        } else {
            WriteSection(json, change.id, *step.section);
        }
    }
}

}  // namespace zupm::tool
