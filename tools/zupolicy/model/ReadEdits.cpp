#include "tools/zupolicy/model/ReadEdits.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "tools/zupolicy/model/EditMembers.h"
#include "tools/zupolicy/model/EntryMembers.h"

namespace zupm::model {
namespace {

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
        edit.kind = EditRequest::Kind::Entry;
        ReadContent(members, edit);
    } else if (kind == "unsupported") {
        const std::optional<std::string> reason = members.FindText("reason");
        const bool isAssignmentList = members.FindText("what") == "assignmentList";
        members.Refuse("no edit can make this difference" +
                       (reason             ? ": " + *reason
                        : isAssignmentList ? std::string(": the assignment list; leave this line out")
                                           : "; compare with --ignore-versions to leave out versions"));
    } else {
        throw JsonComplaint{members.Find("edit")->at, "there is no edit \"" + kind + "\": set, absent or create"};
    }
    members.RequireNoOther();
    return edit;
}

EditRequest ReadLine(std::string_view text, std::uint32_t number)
{
    try {
        RequireNoNull(text);
        const JsonValue value = ReadJson(text, {.ignored = "before"});
        EditRequest edit = ReadEdit(value);
        edit.place = {number, ColumnOf(text, value.at)};
        return edit;
    } catch (const JsonComplaint& complaint) {
        throw EditsComplaint{{number, ColumnOf(text, complaint.at)}, complaint.message};
    }
}

}  // namespace

std::vector<EditRequest> ReadEdits(std::string_view text)
{
    // Some editors and shells begin a file of UTF-8 with this mark, which JSON does not know.
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    std::vector<EditRequest> edits;
    text.remove_prefix(text.starts_with(kMark) ? kMark.size() : 0);
    for (std::uint32_t number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.find_first_not_of(" \t\r") != line.npos) {
            edits.push_back(ReadLine(line, number));
        }
    }
    return edits;
}

}  // namespace zupm::model
