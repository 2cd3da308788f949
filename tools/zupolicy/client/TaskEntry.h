/// One task.
#pragma once

#include <vector>

#include "tools/zupolicy/client/Entry.h"
#include "tools/zupolicy/client/TaskFields.h"
#include "tools/zupolicy/report/Change.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::tool {

/// An Entry over IPolicyTask, with the task's identity fields.
class TaskEntry final : public EntryOf<IPolicyTask> {
public:
    using EntryOf::EntryOf;

    void HandBack(IPolicyFile& file) override { Check(file.AddTask(Object(), 1), Subject()); }
    void PutIds(std::u16string_view softwareId, std::u16string_view taskId);
    /// Sets the fields that have a value and hold another one so far; gives those that changed.
    std::vector<FieldChange> PutFields(const TaskFields& fields);
    /// Fills in what a new task must not leave as the component's placeholder: the display name becomes the task ID,
    /// the other texts empty.
    void PutDefaults(std::u16string_view taskId);
    void WriteIni(std::u16string_view path);

private:
    void PutPriority(std::optional<std::int32_t> priority, std::vector<FieldChange>& changes);
};

}  // namespace zupm::tool
