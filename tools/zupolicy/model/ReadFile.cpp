#include "tools/zupolicy/model/ReadFile.h"

#include <utility>

#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/model/MakeObjects.h"

namespace zupm::model {
namespace {

template <class Source>
void ReadSections(const Source& source, Entry& entry)
{
    for (const zupm::Section& section : source.Sections()) {
        Section& read = entry.sections.Add({section.Name(), {}});
        for (const zupm::Setting& setting : section) {
            read.settings.Add({setting.Name(), setting.Stored()});
        }
    }
}

}  // namespace

PolicyFile OpenToRead(const std::string& path)
{
    return FileReader().Open(path);
}

PolicyFile FileReader::Open(const std::string& path)
{
    return tool::Reading(path, [&](const std::string& source) {
        // An object whose load fails is not used again: it may keep entries of that file.
        PolicyFile file = MakeFile(path, std::exchange(m_object, nullptr));
        Load(file, source, true);
        m_object = ComPtr<IPolicyFile>(file.Get());
        return file;
    });
}

void Load(const PolicyFile& file, const std::string& path, bool readOnly)
{
    client::File(ComPtr<IPolicyFile>(file.Get()), path).Load(readOnly);
}

Entry Read(const Policy& policy)
{
    Entry entry{{policy.SoftwareId(), std::nullopt}, {}, {}};
    ReadSections(policy, entry);
    return entry;
}

Entry Read(const Task& task)
{
    Entry entry{{task.SoftwareId(), task.TaskId()}, {}, {}};
    entry.fields = {task.DisplayName(), task.Type(), task.Platforms(), std::to_string(task.Priority()), task.Creator()};
    ReadSections(task, entry);
    return entry;
}

std::optional<Entry> Find(const PolicyFile& file, const EntryId& id)
{
    if (id.taskId) {
        const std::optional<Task> task = file.FindTask(id.softwareId, *id.taskId);
        return task ? std::optional(Read(*task)) : std::nullopt;
    }
    const std::optional<Policy> policy = file.FindPolicy(id.softwareId);
    return policy ? std::optional(Read(*policy)) : std::nullopt;
}

std::vector<EntryId> Ids(const PolicyFile& file)
{
    std::vector<EntryId> ids;
    for (std::string& id : file.PolicyIds()) {
        ids.push_back({std::move(id), std::nullopt});
    }
    for (const std::string& softwareId : file.TaskSoftwareIds()) {
        for (std::string& taskId : file.TaskIds(softwareId)) {
            ids.push_back({softwareId, std::move(taskId)});
        }
    }
    return ids;
}

}  // namespace zupm::model
