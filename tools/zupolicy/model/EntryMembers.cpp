#include "tools/zupolicy/model/EntryMembers.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zupm::model {
namespace {

void ReadSetting(const JsonValue& value, Section& section)
{
    Members members(value, "a setting");
    Setting setting{members.Text("name"), members.Text("value")};
    members.RequireNoOther();
    if (section.settings.Find(setting.name) != nullptr) {
        members.Refuse("the setting \"" + setting.name + "\" occurs again");
    }
    section.settings.Add(std::move(setting));
}

const std::vector<JsonValue>& ItemsOf(const JsonValue& value, std::string_view name)
{
    if (value.type != JsonValue::Type::Array) {
        throw JsonComplaint{value.at, "\"" + std::string(name) + "\" must be an array"};
    }
    return value.items;
}

void ReadSection(const JsonValue& value, EditRequest& edit)
{
    Members members(value, "a section");
    Section section{members.Text("name"), {}};
    if (const JsonValue* const settings = members.Find("settings"); settings != nullptr) {
        for (const JsonValue& setting : ItemsOf(*settings, "settings")) {
            ReadSetting(setting, section);
        }
    }
    members.RequireNoOther();
    if (edit.sections.Find(section.name) != nullptr) {
        members.Refuse("the section \"" + section.name + "\" occurs again");
    }
    edit.sections.Add(std::move(section));
}

}  // namespace

void ReadId(Members& members, EditRequest& edit)
{
    edit.id.softwareId = members.Text("softwareId");
    edit.id.taskId = members.FindText("taskId");
}

bool ReadFields(Members& members, EditRequest& edit)
{
    bool hasOne = false;
    for (std::size_t i = 0; i < kFieldNames.size(); ++i) {
        const bool isNumber = static_cast<Field>(i) == Field::Priority;
        edit.fields[i] = isNumber ? members.FindNumber(kFieldNames[i]) : members.FindText(kFieldNames[i]);
        hasOne = hasOne || edit.fields[i];
    }
    return hasOne;
}

void ReadContent(Members& members, EditRequest& edit)
{
    ReadId(members, edit);
    if (ReadFields(members, edit) && !edit.id.taskId) {
        members.Refuse(R"(only a task has fields: the member "taskId" is missing)");
    }
    if (const JsonValue* const sections = members.Find("sections"); sections != nullptr) {
        for (const JsonValue& section : ItemsOf(*sections, "sections")) {
            ReadSection(section, edit);
        }
    }
}

void RequireSchema(Members& members)
{
    const JsonValue* const schema = members.Find("schema");
    if (schema != nullptr && (schema->type != JsonValue::Type::Integer || schema->integer != 1)) {
        throw JsonComplaint{schema->at, "\"schema\" must be 1: this program knows no other form of edits"};
    }
}

void RequireNoNull(std::string_view text)
{
    if (const std::size_t null = text.find('\0'); null != text.npos) {
        throw JsonComplaint{null, "a null character is not JSON"};
    }
}

std::uint32_t ColumnOf(std::string_view line, std::size_t at)
{
    std::uint32_t column = 1;
    for (const char byte : line.substr(0, at)) {
        column += (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u ? 1 : 0;
    }
    return column;
}

}  // namespace zupm::model
