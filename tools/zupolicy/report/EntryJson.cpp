#include "tools/zupolicy/report/EntryJson.h"

#include <cstddef>

#include "tools/zupolicy/report/JsonWriter.h"

namespace zupm::tool {
namespace {

void WriteSection(JsonWriter& json, const model::Section& section)
{
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

void WriteIds(JsonWriter& json, const model::EntryId& id)
{
    json.Member("softwareId", id.softwareId);
    if (id.taskId) {
        json.Member("taskId", *id.taskId);
    }
}

}  // namespace

void WriteEntryAsJson(std::ostream& out, const model::Entry& entry)
{
    JsonWriter json(out);
    json.BeginDocument();
    json.Member("kind", entry.id.taskId ? "task" : "policy");
    WriteIds(json, entry.id);
    if (entry.id.taskId) {
        for (std::size_t i = 0; i < entry.fields.size(); ++i) {
            json.Member(model::kFieldNames[i], entry.fields[i]);
        }
    }
    json.Key("sections").BeginArray();
    for (const model::Section& section : entry.sections) {
        WriteSection(json, section);
    }
    json.EndArray();
    json.EndObject();
}

void WriteWrittenEntryAsJson(std::ostream& out, const model::EntryId& id, const std::string& written)
{
    JsonWriter json(out);
    json.BeginDocument();
    WriteIds(json, id);
    json.Member("written", written);
    json.EndObject();
}

}  // namespace zupm::tool
