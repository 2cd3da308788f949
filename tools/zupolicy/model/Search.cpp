#include "tools/zupolicy/model/Search.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/model/Wildcard.h"

namespace zupm::model {
namespace {

bool IsSought(const EntryId& id, const Patterns& patterns)
{
    return Matches(patterns.softwareId, id.softwareId) &&
           (!patterns.taskId || (id.taskId && Matches(*patterns.taskId, *id.taskId)));
}

/// Whether only one name matches the pattern: the component finds that one faster than it lists all.
bool IsOneName(std::string_view pattern)
{
    return std::ranges::all_of(pattern, [](char character) {
        return character > ' ' && character < 0x7F && character != '*' && character != '?';
    });
}

template <class Source>
void SearchIn(const Source& source, const EntryId& id, const Patterns& patterns, std::vector<Match>& matches)
{
    const auto offer = [&](const std::string& section, const std::string& name, std::string value) {
        if (Matches(patterns.value, value)) {
            matches.push_back({id, section, name, std::move(value)});
        }
    };
    if (IsOneName(patterns.section) && IsOneName(patterns.name)) {
        if (std::optional<std::string> value = source.FindStored(patterns.section, patterns.name)) {
            offer(patterns.section, patterns.name, *std::move(value));
        }
        return;
    }
    for (const std::string& section : source.SectionNames()) {
        if (!Matches(patterns.section, section)) {
            continue;
        }
        for (const std::string& name : source.Section(section).Names()) {
            if (Matches(patterns.name, name)) {
                offer(section, name, source.Stored(section, name));
            }
        }
    }
}

}  // namespace

std::vector<Match> Search(const PolicyFile& file, const Patterns& patterns)
{
    std::vector<Match> matches;
    for (const EntryId& id : Ids(file)) {
        if (!IsSought(id, patterns)) {
            continue;
        }
        if (id.taskId) {
            SearchIn(file.Task(id.softwareId, *id.taskId), id, patterns, matches);
        } else {
            SearchIn(file.Policy(id.softwareId), id, patterns, matches);
        }
    }
    return matches;
}

}  // namespace zupm::model
