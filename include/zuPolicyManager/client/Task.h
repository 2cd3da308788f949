/// Tasks.
#pragma once

#include <zuPolicyManager/client/Entry.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace zupm {

namespace client {

/// The settings of a task.
class TaskSettings final : public SettingsOf<IPolicyTask> {
public:
    using SettingsOf::SettingsOf;

    void HandBackTo(const client::File& file) const { Check(file.Object().AddTask(&Own(), 1)); }

private:
    [[nodiscard]] std::string Describe() const override
    {
        return "task " + Shown(&IPolicyTask::get_SoftwareID) + " " + Shown(&IPolicyTask::get_TaskID);
    }
};

}  // namespace client

/// One task: a private copy, which a file has after HandBack and the disk after Save. Besides its sections it has
/// identity fields. HandBack repeats them as settings of the sections "Task" and "General", so set the fields, not
/// those settings.
///
/// Lifetime  A value that owns its object and keeps its file's object alive; copies share both. What was moved from is
///           empty: Get() is null, and every other call throws Error (NotInitialised).
/// Threads   Any thread may call it, also several at once; only assignment needs care, as with any value.
/// Errors    Each call throws what Error.h lists. A field takes every text; one that XML cannot hold makes HandBack
///           throw Error (Unexpected).
class Task : public client::Entry<Task, IPolicyTask, client::TaskSettings> {
public:
    /// An object that the caller has. `file` is what HandBack hands it to; null for none.
    explicit Task(ComPtr<IPolicyTask> object, std::shared_ptr<const client::File> file = nullptr)
        : Entry(std::make_shared<const client::TaskSettings>(std::move(object), std::move(file)))
    {
    }

    [[nodiscard]] std::string SoftwareId() const { return Access().Text(&IPolicyTask::get_SoftwareID); }
    [[nodiscard]] std::string TaskId() const { return Access().Text(&IPolicyTask::get_TaskID); }
    [[nodiscard]] std::string DisplayName() const { return Access().Text(&IPolicyTask::get_DisplayName); }
    [[nodiscard]] std::string Type() const { return Access().Text(&IPolicyTask::get_TaskType); }
    [[nodiscard]] std::string Platforms() const { return Access().Text(&IPolicyTask::get_PlatformsSupported); }
    [[nodiscard]] std::string Creator() const { return Access().Text(&IPolicyTask::get_CreatorID); }
    [[nodiscard]] std::int32_t Priority() const
    {
        LONG priority = 0;
        Access().Check(Access().Own().get_Priority(&priority));
        return static_cast<std::int32_t>(priority);
    }
    /// The time stamp that the task had when it was taken out of its file; empty for a new one.
    [[nodiscard]] std::string Version() const
    {
        // This getter alone leaves the string in the slot to the caller, and the slot is empty here.
        return Access().Text(&IPolicyTask::get_Version);
    }

    Task& SetSoftwareId(std::string_view id) & { return With(&IPolicyTask::put_SoftwareID, id); }
    Task& SetTaskId(std::string_view id) & { return With(&IPolicyTask::put_TaskID, id); }
    Task& SetDisplayName(std::string_view name) & { return With(&IPolicyTask::put_DisplayName, name); }
    Task& SetType(std::string_view type) & { return With(&IPolicyTask::put_TaskType, type); }
    Task& SetPlatforms(std::string_view platforms) & { return With(&IPolicyTask::put_PlatformsSupported, platforms); }
    Task& SetCreator(std::string_view creator) & { return With(&IPolicyTask::put_CreatorID, creator); }
    Task& SetPriority(std::int32_t priority) &
    {
        Access().Check(Access().Own().put_Priority(priority));
        return *this;
    }
    Task SetSoftwareId(std::string_view id) && { return std::move(SetSoftwareId(id)); }
    Task SetTaskId(std::string_view id) && { return std::move(SetTaskId(id)); }
    Task SetDisplayName(std::string_view name) && { return std::move(SetDisplayName(name)); }
    Task SetType(std::string_view type) && { return std::move(SetType(type)); }
    Task SetPlatforms(std::string_view platforms) && { return std::move(SetPlatforms(platforms)); }
    Task SetCreator(std::string_view creator) && { return std::move(SetCreator(creator)); }
    Task SetPriority(std::int32_t priority) && { return std::move(SetPriority(priority)); }

    /// The task as XML text: a "TaskData" document with the fields and a fresh time stamp.
    [[nodiscard]] std::string Xml() const { return Access().Text(&IPolicyTask::get_TaskData); }

    /// Writes the fields and all settings into an INI file, which keeps its other settings.
    void WriteIni(std::string_view path) const
    {
        Access().Check(Access().Own().WriteTaskDataToIniFile(client::Argument(path)));
    }

private:
    Task& With(HRESULT (IPolicyTask::*put)(BSTR), std::string_view text)
    {
        Put(put, text);
        return *this;
    }
};

}  // namespace zupm
