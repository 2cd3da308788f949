// Any bytes as what `zupolicy import` and `apply` read: one policy or task, and edits, as JSON.
//
// Promises: what is refused is reported with a place in the text and a reason. An entry that is accepted can be
// printed as `export` does, and reads back as the same entry; made again, it makes no difference. No edit makes a
// difference twice in a row.
#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "fuzz/support/Demand.h"
#include "tools/zupolicy/model/Change.h"
#include "tools/zupolicy/model/EditRequest.h"
#include "tools/zupolicy/model/ReadEdits.h"
#include "tools/zupolicy/model/ReadEntry.h"
#include "tools/zupolicy/report/EntryJson.h"

namespace zupm::fuzz {

namespace {

using model::EditRequest;
using model::Entry;

void DemandPlace(const model::EditPlace& place, std::string_view text)
{
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    const std::string shown = std::to_string(place.line) + ":" + std::to_string(place.column);
    Demand(place.line > 0 && place.line <= lines, "a complaint has its line", shown);
    std::string_view line = text;
    for (std::uint32_t number = 1; number < place.line; ++number) {
        line.remove_prefix(line.find('\n') + 1);
    }
    line = line.substr(0, line.find('\n'));
    Demand(place.column > 0 && place.column <= line.size() + 1, "a complaint has its column", shown);
}

void DemandComplaint(const model::EditsComplaint& complaint, std::string_view text)
{
    DemandPlace(complaint.place, text);
    Demand(!complaint.message.empty(), "a complaint has a reason");
}

/// The entry that an edit leaves of nothing; nothing when it cannot be made.
std::optional<Entry> MadeOfNothing(EditRequest edit, EditRequest::Kind kind)
{
    edit.kind = kind;
    std::optional<Entry> state;
    try {
        Demand(model::Make(edit, state), "a new entry is a difference");
        Demand(state.has_value(), "an entry is made");
        Demand(!model::Make(edit, state), "an entry that was made is no difference");
    } catch (const model::Refusal& refusal) {
        Demand(edit.id.taskId && refusal.reason == model::Refusal::Reason::Repeats,
               "only what repeats the field of a task cannot be made");
        state.reset();
    }
    return state;
}

std::string Printed(const Entry& entry)
{
    std::ostringstream json;
    tool::WriteEntryAsJson(json, entry);
    return std::move(json).str();
}

void DemandSameAfterPrinting(const Entry& entry)
{
    const std::string text = Printed(entry);
    try {
        const EditRequest again = model::ReadEntry(text);
        const std::optional<Entry> made = MadeOfNothing(again, EditRequest::Kind::ExactEntry);
        Demand(made && model::Compare(&entry, &*made).IsEmpty(), "a printed entry is the same entry", text);
        Demand(Printed(*made) == text, "it is printed as the same text", text);
    } catch (const model::EditsComplaint& complaint) {
        Demand(false, "a printed entry can be read", complaint.message + ": " + text);
    }
}

void ReadAsEntry(std::string_view text)
{
    EditRequest edit;
    try {
        edit = model::ReadEntry(text);
    } catch (const model::EditsComplaint& complaint) {
        DemandComplaint(complaint, text);
        return;
    }
    DemandPlace(edit.place, text);
    const std::optional<Entry> exact = MadeOfNothing(edit, EditRequest::Kind::ExactEntry);
    const std::optional<Entry> merged = MadeOfNothing(edit, EditRequest::Kind::Entry);
    Demand(exact.has_value() == merged.has_value(), "both ways of making an entry agree");
    if (exact && merged) {
        Demand(model::Compare(&*exact, &*merged).IsEmpty(), "both ways make the same entry");
        DemandSameAfterPrinting(*exact);
    }
}

/// Makes each edit twice in what the edits before it left.
void MakeTwice(const std::vector<EditRequest>& edits)
{
    std::map<model::EntryId, std::optional<Entry>> states;
    for (const EditRequest& edit : edits) {
        std::optional<Entry>& state = states[edit.id];
        try {
            static_cast<void>(model::Make(edit, state));
            Demand(!model::Make(edit, state), "the second time an edit makes no difference");
        } catch (const model::Refusal&) {
            state.reset();  // it is of no use any more
        }
    }
}

void ReadAsEdits(std::string_view text)
{
    try {
        MakeTwice(model::ReadEdits(text));
    } catch (const model::EditsComplaint& complaint) {
        DemandComplaint(complaint, text);
    }
}

}  // namespace

}  // namespace zupm::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    zupm::fuzz::ReadAsEntry(text);
    zupm::fuzz::ReadAsEdits(text);
    return 0;
}
