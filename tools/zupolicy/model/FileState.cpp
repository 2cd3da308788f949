#include "tools/zupolicy/model/FileState.h"

#include <optional>
#include <utility>

#include "tools/zupolicy/model/ReadFile.h"

namespace zupm::model {

FileState ReadState(const std::string& path)
{
    const PolicyFile file = OpenToRead(path);
    FileState state{file.AssignmentList(), Ids(file), {}};
    for (const EntryId& id : state.ids) {
        if (std::optional<Entry> entry = Find(file, id)) {
            DropRepeated(*entry);
            state.entries.emplace(id, *std::move(entry));
        }
    }
    return state;
}

}  // namespace zupm::model
