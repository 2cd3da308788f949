#include "tools/zupolicy/model/ReadEdits.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "tools/zupolicy/model/EditMembers.h"

namespace zupm::model {
namespace {

void ReadId(Members& members, EditRequest& edit)
{
    edit.id.softwareId = members.Text("softwareId");
    edit.id.taskId = members.FindText("taskId");
}

/// Reads the fields that are there; returns whether there is one.
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

void ReadFieldsObject(const JsonValue& value, const Members& members, EditRequest& edit)
{
    if (!edit.id.taskId) {
        members.Refuse(R"(only a task has fields: the member "taskId" is missing)");
    }
    Members fields(value, "\"fields\"");
    if (!ReadFields(fields, edit)) {
        fields.Refuse("\"fields\" names no field");
    }
    fields.RequireNoOther();
}

void ReadSet(Members& members, EditRequest& edit)
{
    ReadId(members, edit);
    static_cast<void>(members.Find("before"));
    if (const JsonValue* const fields = members.Find("fields"); fields != nullptr) {
        edit.kind = EditRequest::Kind::TaskFields;
        ReadFieldsObject(*fields, members, edit);
        return;
    }
    edit.kind = EditRequest::Kind::Section;
    edit.section = members.Text("section");
    const std::optional<std::string> name = members.FindText("name");
    const std::optional<std::string> value = members.FindText("value");
    if (name.has_value() != value.has_value()) {
        members.Refuse(R"("name" and "value" belong together)");
    }
    if (name) {
        edit.kind = EditRequest::Kind::Setting;
        edit.name = *name;
        edit.value = *value;
    }
}

void ReadAbsent(Members& members, EditRequest& edit)
{
    ReadId(members, edit);
    static_cast<void>(members.Find("before"));
    const std::optional<std::string> section = members.FindText("section");
    const std::optional<std::string> name = members.FindText("name");
    if (name && !section) {
        members.Refuse(R"("name" needs the member "section")");
    }
    edit.section = section.value_or("");
    edit.name = name.value_or("");
    edit.kind = name      ? EditRequest::Kind::WithoutSetting
                : section ? EditRequest::Kind::WithoutSection
                          : EditRequest::Kind::WithoutEntry;
}

void ReadCreate(Members& members, EditRequest& edit)
{
    edit.kind = EditRequest::Kind::Entry;
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

EditRequest ReadEdit(const JsonValue& value)
{
    Members members(value, "an edit");
    RequireSchema(members);
    const std::string kind = members.Text("edit");
    if (members.Find("redacted") != nullptr) {
        members.Refuse("values of this edit are hidden, so it cannot be made; compare without --redact");
    }
    EditRequest edit;
    if (kind == "set") {
        ReadSet(members, edit);
    } else if (kind == "absent") {
        ReadAbsent(members, edit);
    } else if (kind == "create") {
        ReadCreate(members, edit);
    } else if (kind == "unsupported") {
        const std::optional<std::string> reason = members.FindText("reason");
        members.Refuse("no edit can make this difference" +
                       (reason ? ": " + *reason : "; compare with --ignore-versions to leave out versions"));
    } else {
        throw JsonComplaint{members.Find("edit")->at, "there is no edit \"" + kind + "\": set, absent or create"};
    }
    members.RequireNoOther();
    return edit;
}

/// The column of a byte: one more than the number of characters before it.
std::uint32_t ColumnOf(std::string_view line, std::size_t at)
{
    std::uint32_t column = 1;
    for (const char byte : line.substr(0, at)) {
        column += (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u ? 1 : 0;
    }
    return column;
}

EditRequest ReadLine(const std::string& line, std::uint32_t number, std::size_t skipped)
{
    try {
        const std::string_view text = std::string_view(line).substr(skipped);
        // The reader takes a null character for the end of its text.
        if (const std::size_t null = text.find('\0'); null != text.npos) {
            throw JsonComplaint{null, "a null character is not JSON"};
        }
        const JsonValue value = ReadJson(text);
        EditRequest edit = ReadEdit(value);
        edit.place = {number, ColumnOf(text, value.at)};
        return edit;
    } catch (const JsonComplaint& complaint) {
        const std::string_view text = std::string_view(line).substr(skipped);
        throw EditsComplaint{{number, ColumnOf(text, complaint.at)}, complaint.message};
    }
}

}  // namespace

std::vector<EditRequest> ReadEdits(std::istream& in)
{
    // Some editors and shells begin a file of UTF-8 with this mark, which JSON does not know.
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    std::vector<EditRequest> edits;
    std::string line;
    for (std::uint32_t number = 1; std::getline(in, line); ++number) {
        const std::size_t skipped = number == 1 && line.starts_with(kMark) ? kMark.size() : 0;
        if (line.find_first_not_of(" \t\r", skipped) != line.npos) {
            edits.push_back(ReadLine(line, number, skipped));
        }
    }
    if (!in.eof()) {
        throw std::ios_base::failure("cannot be read");
    }
    return edits;
}

}  // namespace zupm::model
