#include "tools/zupolicy/model/ReadEntry.h"

#include <algorithm>
#include <cstddef>

#include "tools/zupolicy/model/EditMembers.h"
#include "tools/zupolicy/model/EntryMembers.h"

namespace zupm::model {
namespace {

void RequireKind(Members& members, const EditRequest& edit)
{
    const std::optional<std::string> kind = members.FindText("kind");
    const char* const actual = edit.id.taskId ? "task" : "policy";
    if (kind && *kind != actual) {
        throw JsonComplaint{members.Find("kind")->at, std::string(R"("kind" must be ")") + actual + "\" for an entry " +
                                                          (edit.id.taskId ? "with" : "without") +
                                                          R"( the member "taskId")"};
    }
}

/// `show` prints an empty text for the priority of a task that has none.
void DropEmptyPriority(JsonValue& entry)
{
    std::erase_if(entry.members, [](const JsonValue::Member& member) {
        return member.name == "priority" && member.value.type == JsonValue::Type::Text && member.value.text.empty();
    });
}

/// An ID that is empty comes from a script with a variable that is not set.
void RequireIds(Members& members)
{
    for (const char* name : {"softwareId", "taskId"}) {
        if (members.FindText(name) == "") {
            throw JsonComplaint{members.Find(name)->at, "\"" + std::string(name) + "\" must not be empty"};
        }
    }
}

EditRequest ReadObject(const JsonValue& value)
{
    Members members(value, "an entry");
    RequireSchema(members);
    if (members.Find("redacted") != nullptr) {
        members.Refuse("values of this entry may be hidden; show it without --redact");
    }
    EditRequest edit;
    edit.kind = EditRequest::Kind::Entry;
    ReadContent(members, edit);
    RequireIds(members);
    RequireKind(members, edit);
    static_cast<void>(members.Find("version"));
    members.RequireNoOther();
    return edit;
}

EditPlace PlaceOf(std::string_view text, std::size_t at)
{
    const std::string_view before = text.substr(0, at);
    const std::size_t lineBreak = before.rfind('\n');
    const std::size_t start = lineBreak == before.npos ? 0 : lineBreak + 1;
    return {static_cast<std::uint32_t>(1 + std::ranges::count(before, '\n')), ColumnOf(text.substr(start), at - start)};
}

}  // namespace

EditRequest ReadEntry(std::string_view text)
{
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(kMark) ? kMark.size() : 0);
    try {
        RequireNoNull(text);
        JsonValue value = ReadJson(text, {.ignored = "version"});
        DropEmptyPriority(value);
        EditRequest edit = ReadObject(value);
        edit.place = PlaceOf(text, value.at);
        return edit;
    } catch (const JsonComplaint& complaint) {
        throw EditsComplaint{PlaceOf(text, complaint.at), complaint.message};
    }
}

}  // namespace zupm::model
