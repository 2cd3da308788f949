#include "tools/zupolicy/model/Search.h"

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
            std::string value = source.Stored(section, name);
            if (Matches(patterns.value, value)) {
                matches.push_back({id, section, name, std::move(value)});
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
