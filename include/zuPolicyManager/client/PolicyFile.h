/// Policy files.
#pragma once

#include <zuPolicyManager/client/File.h>
#include <zuPolicyManager/client/Iterator.h>
#include <zuPolicyManager/client/Notice.h>
#include <zuPolicyManager/client/Policy.h>
#include <zuPolicyManager/client/Task.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zupm {

namespace client {

/// A policy of a file. Throws NotFound.
[[nodiscard]] inline Policy TakePolicy(const std::shared_ptr<const File>& file, std::string_view id)
{
    ComPtr<IUnknown> object;
    file->Check(file->Object().GetPolicy(Argument(id), object.Put()), "policy ", id);
    return Policy(Require<IPolicyProduct>(object), file);
}

/// A task of a file. Throws NotFound.
[[nodiscard]] inline Task TakeTask(const std::shared_ptr<const File>& file, std::string_view softwareId,
                                   std::string_view taskId)
{
    ComPtr<IUnknown> object;
    file->Check(file->Object().GetTask(Argument(softwareId), Argument(taskId), object.Put()), "task ", softwareId, " ",
                taskId);
    return Task(Require<IPolicyTask>(object), file);
}

/// What `take` gives; nothing when it throws NotFound.
template <class Take>
[[nodiscard]] auto Optional(const Take& take) -> std::optional<decltype(take())>
{
    try {
        return take();
    } catch (const NotFound&) {
        return std::nullopt;
    }
}

/// The policies of a file, as rows; one that was removed meanwhile is passed over.
class PolicyRows {
public:
    using value_type = Policy;

    PolicyRows(std::shared_ptr<const File> file, std::vector<std::string> ids)
        : m_file(std::move(file)), m_ids(std::move(ids))
    {
    }

    [[nodiscard]] std::size_t Count() const noexcept { return m_ids.size(); }
    [[nodiscard]] std::optional<Policy> Make(std::size_t row) const
    {
        return Optional([&] { return TakePolicy(m_file, m_ids[row]); });
    }

private:
    std::shared_ptr<const File> m_file;
    std::vector<std::string> m_ids;
};

/// The tasks of a file, as rows; one that was removed meanwhile is passed over.
class TaskRows {
public:
    using value_type = Task;

    TaskRows(std::shared_ptr<const File> file, std::vector<std::pair<std::string, std::string>> ids)
        : m_file(std::move(file)), m_ids(std::move(ids))
    {
    }

    [[nodiscard]] std::size_t Count() const noexcept { return m_ids.size(); }
    [[nodiscard]] std::optional<Task> Make(std::size_t row) const
    {
        return Optional([&] { return TakeTask(m_file, m_ids[row].first, m_ids[row].second); });
    }

private:
    std::shared_ptr<const File> m_file;
    std::vector<std::pair<std::string, std::string>> m_ids;
};

}  // namespace client

/// Ranges of Policy and Task values, in file order. They hold the IDs that there were when they were made; each step
/// takes one policy or task out of the file. A loop may hand back, add and remove.
using Policies = client::Range<client::PolicyRows>;
using Tasks = client::Range<client::TaskRows>;

/// What a file is loaded for.
enum class Access {
    ReadWrite,
    ReadOnly,  ///< Every edit is refused (zupm::ReadOnly).
};

/// A policy file in memory: it is loaded whole, edited through the policies and tasks that are taken from it and handed
/// back, and written whole.
///
/// Save does not overwrite what something else changed meanwhile, but throws Changed: open the file again and repeat
/// the edit. Edit (Edit.h) locks the file from the beginning, so that cannot happen to it between programs that do so.
///
/// Lifetime  A value that owns its object; copies share it. What was taken from it may outlive it and keeps the object
///           alive. What was moved from is empty: Get() is null, and every other call throws Error (NotInitialised).
/// Threads   Any thread may call it, also several at once; only assignment needs care, as with any value.
/// Errors    Each call throws what Error.h lists. Paths are UTF-8.
class PolicyFile {
public:
    /// Loads a file. FileError; SyntaxError and InvalidText with the place; Error: the component is not there.
    [[nodiscard]] static PolicyFile Open(std::string_view path, Access access = Access::ReadWrite)
    {
        return Open(client::Create<IPolicyFile>(), path, access);
    }
    /// The same with an object that the caller has made in a way of its own.
    [[nodiscard]] static PolicyFile Open(ComPtr<IPolicyFile> object, std::string_view path, Access access)
    {
        PolicyFile file(std::move(object), std::string(path));
        file.Shared().Load(access == Access::ReadOnly);
        return file;
    }
    /// An object that the caller has. `path` is what its file is called in messages.
    explicit PolicyFile(ComPtr<IPolicyFile> object, std::string path = {})
        : m_file(std::make_shared<const client::File>(std::move(object), std::move(path)))
    {
    }

    /// The interface, for calls that this header does not have; null for a value that was moved from. It stays valid
    /// as long as a copy of this value lives.
    [[nodiscard]] IPolicyFile* Get() const noexcept { return m_file ? &m_file->Object() : nullptr; }
    /// The path that it was opened with.
    [[nodiscard]] const std::string& Path() const { return Shared().Path(); }

    /// A copy of a policy. NotFound.
    [[nodiscard]] zupm::Policy Policy(std::string_view softwareId) const
    {
        static_cast<void>(Shared());
        return client::TakePolicy(m_file, softwareId);
    }
    [[nodiscard]] std::optional<zupm::Policy> FindPolicy(std::string_view softwareId) const
    {
        return client::Optional([&] { return Policy(softwareId); });
    }
    /// The stored text of a policy's setting; nothing when the policy, the section or the setting is missing. No copy
    /// of the policy is made, so this is the fastest way to one setting; for many of one policy, FindPolicy is.
    [[nodiscard]] std::optional<std::string> FindStored(std::string_view softwareId, std::string_view section,
                                                        std::string_view name) const
    {
        const client::Argument id(softwareId);
        return Shared().FindText(
            [&](auto& contents, auto... rest) { return contents.GetStoredPolicySetting(id, rest...); }, section, name,
            "policy ", softwareId);
    }
    [[nodiscard]] bool ContainsPolicy(std::string_view softwareId) const { return FindPolicy(softwareId).has_value(); }
    /// The software IDs of all policies, in file order.
    [[nodiscard]] std::vector<std::string> PolicyIds() const
    {
        return Shared().Names([](auto& contents, IPolicyNames** names) { return contents.get_PolicyIDs(names); });
    }
    [[nodiscard]] zupm::Policies Policies() const { return zupm::Policies({m_file, PolicyIds()}); }

    /// A copy of a task. NotFound.
    [[nodiscard]] zupm::Task Task(std::string_view softwareId, std::string_view taskId) const
    {
        static_cast<void>(Shared());
        return client::TakeTask(m_file, softwareId, taskId);
    }
    [[nodiscard]] std::optional<zupm::Task> FindTask(std::string_view softwareId, std::string_view taskId) const
    {
        return client::Optional([&] { return Task(softwareId, taskId); });
    }
    /// As FindStored, of a task.
    [[nodiscard]] std::optional<std::string> FindStoredInTask(std::string_view softwareId, std::string_view taskId,
                                                              std::string_view section, std::string_view name) const
    {
        const client::Argument software(softwareId);
        const client::Argument task(taskId);
        return Shared().FindText(
            [&](auto& contents, auto... rest) { return contents.GetStoredTaskSetting(software, task, rest...); },
            section, name, "task ", softwareId, " ", taskId);
    }
    [[nodiscard]] bool ContainsTask(std::string_view softwareId, std::string_view taskId) const
    {
        return FindTask(softwareId, taskId).has_value();
    }
    /// The software IDs that have tasks, in the order of their first tasks.
    [[nodiscard]] std::vector<std::string> TaskSoftwareIds() const
    {
        return Shared().Names([](auto& contents, IPolicyNames** names) { return contents.get_TaskSoftwareIDs(names); });
    }
    /// The task IDs of one product, in file order; none for a product without tasks.
    [[nodiscard]] std::vector<std::string> TaskIds(std::string_view softwareId) const
    {
        const client::Argument id(softwareId);
        return Shared().Names([&](auto& contents, IPolicyNames** names) { return contents.GetTaskIDs(id, names); });
    }
    /// All tasks, product by product.
    [[nodiscard]] zupm::Tasks Tasks() const
    {
        std::vector<std::pair<std::string, std::string>> ids;
        for (const std::string& softwareId : TaskSoftwareIds()) {
            AppendTasks(softwareId, ids);
        }
        return zupm::Tasks({m_file, std::move(ids)});
    }
    /// The tasks of one product.
    [[nodiscard]] zupm::Tasks Tasks(std::string_view softwareId) const
    {
        std::vector<std::pair<std::string, std::string>> ids;
        AppendTasks(softwareId, ids);
        return zupm::Tasks({m_file, std::move(ids)});
    }

    /// A new policy without sections; the file has it after HandBack.
    [[nodiscard]] zupm::Policy CreatePolicy(std::string_view softwareId) const
    {
        ComPtr<IPolicyProduct> object;
        Shared().Check(Shared().Object().CreatePolicy(object.Put()), "a new policy");
        return zupm::Policy(std::move(object), m_file).SetSoftwareId(softwareId);
    }
    /// A new task without sections, with its ID as display name, priority 0 and no other text; the file has it after
    /// HandBack.
    [[nodiscard]] zupm::Task CreateTask(std::string_view softwareId, std::string_view taskId) const
    {
        ComPtr<IPolicyTask> object;
        Shared().Check(Shared().Object().CreateTask(object.Put()), "a new task");
        if (!object) {
            client::ThrowCode(result::GeneralFailure, Shared().Subject("a new task"));
        }
        zupm::Task task(std::move(object), m_file);
        // The component begins with the word "invalid" in every field.
        task.SetSoftwareId(softwareId).SetTaskId(taskId).SetDisplayName(taskId);
        return std::move(task).SetType({}).SetPlatforms({}).SetCreator({});
    }

    /// Puts a copy of a policy or task of any file into the document, in place of one with the same ID.
    void Add(const zupm::Policy& policy) const { AddObject(policy.Get(), &IPolicyFile::AddPolicy); }
    void Add(const zupm::Task& task) const { AddObject(task.Get(), &IPolicyFile::AddTask); }
    /// Removes a policy or task from the document. NotFound, ReadOnly.
    void RemovePolicy(std::string_view softwareId) const
    {
        Shared().Check(Shared().Object().RemovePolicy(client::Argument(softwareId)), "policy ", softwareId);
    }
    void RemoveTask(std::string_view softwareId, std::string_view taskId) const
    {
        Shared().Check(Shared().Object().RemoveTask(client::Argument(softwareId), client::Argument(taskId)), "task ",
                       softwareId, " ", taskId);
    }

    /// The version of the policies, of the tasks, and the assignment list.
    [[nodiscard]] std::string PolicyVersion() const { return Text(&IPolicyFile::get_VersionPolicy); }
    [[nodiscard]] std::string TaskVersion() const { return Text(&IPolicyFile::get_VersionTask); }
    [[nodiscard]] std::string AssignmentList() const { return Text(&IPolicyFile::get_PolicyAssignmentList); }
    /// The document as text, as it is. Error (NotInitialised): nothing is loaded, or memory ran out.
    [[nodiscard]] std::string Text() const
    {
        Bstr text;
        Shared().Check(Shared().Object().WriteFileBuffer(text.Slot()));
        if (text.Get() == nullptr) {
            client::ThrowCode(result::NotInitialised, Path(), Path());
        }
        return client::ToText(text);
    }
    /// What is odd in the document as it is now.
    [[nodiscard]] zupm::Notices Notices() const
    {
        ComPtr<IPolicyNotices> notices;
        Shared().Check(Shared().As<IPolicyFileContents>()->get_Notices(notices.Put()));
        return zupm::Notices({std::move(notices), m_file});
    }

    /// Whether the file at the path is no longer the one that was loaded.
    [[nodiscard]] bool HasChangedOnDisk() const
    {
        LONG changed = 0;
        Shared().Check(Shared().As<IPolicyFileContents>()->get_HasChangedOnDisk(&changed));
        return changed != 0;
    }
    /// Replaces the file in one step, if it is still the one that was loaded; waits for another editor to finish.
    /// Changed and Locked: nothing was written; NotFlushed: it was; ReadOnly; FileError.
    void Save(std::chrono::milliseconds timeout = kPatience) const { Shared().Save(timeout); }
    /// Writes the document to any path and replaces a file that is there, whatever it is. FileError.
    void SaveAs(std::string_view path) const
    {
        const HRESULT result = Shared().Object().WriteFile(client::Argument(path), 0);
        client::File(ComPtr<IPolicyFile>(Get()), std::string(path)).Check(result);
    }

private:
    [[nodiscard]] const client::File& Shared() const
    {
        if (!m_file) {
            client::ThrowEmpty();
        }
        return *m_file;
    }
    [[nodiscard]] std::string Text(HRESULT (IPolicyFile::*get)(BSTR*)) const
    {
        Bstr text;
        Shared().Check((Shared().Object().*get)(text.Slot()));
        return client::ToText(text);
    }
    void AddObject(IUnknown* object, HRESULT (IPolicyFile::*add)(IUnknown*, LONG)) const
    {
        if (object == nullptr) {
            client::ThrowEmpty();
        }
        Shared().Check((Shared().Object().*add)(object, 1));
    }
    void AppendTasks(std::string_view softwareId, std::vector<std::pair<std::string, std::string>>& ids) const
    {
        for (std::string& taskId : TaskIds(softwareId)) {
            ids.emplace_back(softwareId, std::move(taskId));
        }
    }

    std::shared_ptr<const client::File> m_file;
};

}  // namespace zupm
