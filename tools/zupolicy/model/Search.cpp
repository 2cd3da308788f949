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

/// Whether the pattern is itself the only name that matches: the component finds that one faster than it lists all.
bool IsOneName(std::string_view pattern)
{
    return std::ranges::all_of(pattern, [](char character) {
        return character > ' ' && character < 0x7F && character != '*' && character != '?';
    });
}

/// The policies and tasks of the file whose IDs match, in the order of Ids.
std::vector<EntryId> FindIds(const PolicyFile& file, const Patterns& patterns)
{
    std::vector<EntryId> ids;
    if (IsOneName(patterns.softwareId)) {
        ids.push_back({patterns.softwareId, std::nullopt});
        for (std::string& taskId : file.TaskIds(patterns.softwareId)) {
            ids.push_back({patterns.softwareId, std::move(taskId)});
        }
    } else {
        ids = Ids(file);
    }
    std::erase_if(ids, [&](const EntryId& id) { return !IsSought(id, patterns); });
    return ids;
}

std::optional<std::string> FindStored(const PolicyFile& file, const EntryId& id, const Patterns& patterns)
{
    return id.taskId ? file.FindStoredInTask(id.softwareId, *id.taskId, patterns.section, patterns.name)
                     : file.FindStored(id.softwareId, patterns.section, patterns.name);
}

template <class Source>
void SearchIn(const Source& source, const EntryId& id, const Patterns& patterns, std::vector<Match>& matches)
{
    for (const std::string& section : source.SectionNames()) {
        if (!Matches(patterns.section, section)) {
            continue;
        }
        for (const std::string& name : source.Section(section).Names()) {
            if (!Matches(patterns.name, name)) {
                continue;
            }
            if (std::string value = source.Stored(section, name); Matches(patterns.value, value)) {
                matches.push_back({id, section, name, std::move(value)});
            }
        }
    }
}

void SearchIn(const PolicyFile& file, const EntryId& id, const Patterns& patterns, std::vector<Match>& matches)
{
    if (id.taskId) {
        SearchIn(file.Task(id.softwareId, *id.taskId), id, patterns, matches);
    } else if (const std::optional<Policy> policy = file.FindPolicy(id.softwareId)) {
        SearchIn(*policy, id, patterns, matches);
    }
}

}  // namespace

std::vector<Match> Search(const PolicyFile& file, const Patterns& patterns)
{
    const bool isOneSetting = IsOneName(patterns.section) && IsOneName(patterns.name);
    std::vector<Match> matches;
    for (const EntryId& id : FindIds(file, patterns)) {
        if (!isOneSetting) {
            SearchIn(file, id, patterns, matches);
        } else if (auto value = FindStored(file, id, patterns); value && Matches(patterns.value, *value)) {
            matches.push_back({id, patterns.section, patterns.name, *std::move(value)});
        }
    }
    return matches;
}

}  // namespace zupm::model
