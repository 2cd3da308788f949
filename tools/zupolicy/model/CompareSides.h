/// Two states of a file, entry by entry.
#pragma once

#include <set>

#include "tools/zupolicy/model/Change.h"

namespace zupm::model {

/// Calls `report(change)` for each entry of either side: policies, then tasks; those of `before` in its order, then
/// those that only `after` has. A side has `ids` in the order of its file, and `Find(id)`, which returns something like
/// a pointer to the entry without what repeats fields.
template <class Side, class Report>
void CompareSides(const Side& before, const Side& after, const Report& report)
{
    const std::set<EntryId> known(before.ids.begin(), before.ids.end());
    const auto compare = [&](const EntryId& id) {
        const auto one = before.Find(id);
        const auto other = after.Find(id);
        report(Compare(one ? &*one : nullptr, other ? &*other : nullptr));
    };
    for (const bool tasks : {false, true}) {
        for (const EntryId& id : before.ids) {
            if (id.taskId.has_value() == tasks) {
                compare(id);
            }
        }
        for (const EntryId& id : after.ids) {
            if (id.taskId.has_value() == tasks && !known.contains(id)) {
                compare(id);
            }
        }
    }
}

}  // namespace zupm::model
