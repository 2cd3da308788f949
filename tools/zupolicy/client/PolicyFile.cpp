#include "tools/zupolicy/client/PolicyFile.h"

#include <filesystem>

#include "tools/zupolicy/client/Component.h"
#include "tools/zupolicy/client/Entry.h"
#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {
namespace {

template <typename Interface>
ComPtr<Interface> QueryFor(IUnknown& object, REFIID iid, const std::string& subject)
{
    ComPtr<Interface> wanted;
    Check(object.QueryInterface(iid, wanted.PutVoid()), subject);
    return wanted;
}

/// Takes a list by `list(slot)`, calls `use(name)` for each name, and gives their number.
template <typename List, typename Use>
std::size_t ForEachName(const std::string& subject, List list, Use use)
{
    ComPtr<IPolicyNames> names;
    Check(list(names.Put()), subject);
    LONG count = 0;
    Check(names->get_Count(&count), subject);
    for (LONG i = 0; i < count; ++i) {
        Bstr name;
        Check(names->get_Item(i, name.Slot()), subject);
        use(name.Get());
    }
    return static_cast<std::size_t>(count);
}

bool IsFolder(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::is_directory(std::filesystem::path(FromUtf8(path)), ignored);
}

/// Calls `open`, which opens the file at the path.
template <typename Open>
auto Opened(const std::string& path, const Open& open)
{
    try {
        return open();
    } catch (const Error& error) {
        // The system reports a denied access, or a name that is not valid.
        if (IsFolder(path)) {
            throw CallError(error.Code(), path, "is a folder");
        }
        throw CallError(error, path);
    }
}

IfChanged IfChangedFor(bool force)
{
    return force ? IfChanged::Overwrite : IfChanged::Refuse;
}

}  // namespace

void RequireName(const std::string& path)
{
    if (!IsUtf8(path)) {
        throw Failure(ExitCode::FileError, path + ": the name is not valid UTF-8");
    }
}

PolicyFile::PolicyFile(const std::string& path, Access access) : m_path(path), m_file(tool::Create<IPolicyFile>(), path)
{
    RequireName(path);
    const zupm::Access kind = access == Access::ReadOnly ? zupm::Access::ReadOnly : zupm::Access::ReadWrite;
    m_file = Opened(path, [&] { return zupm::PolicyFile::Open(ComPtr<IPolicyFile>(m_file.Get()), path, kind); });
}

PolicyFile::PolicyFile(const std::string& path, std::chrono::seconds patience)
    : m_path(path), m_file(tool::Create<IPolicyFile>(), path)
{
    RequireName(path);
    m_edit = Opened(path, [&] { return zupm::Edit(m_file, patience); });
}

std::unique_ptr<Entry> PolicyFile::Find(const Target& target)
{
    if (target.taskId) {
        return FindTask(target);
    }
    return FindPolicy(target);
}

std::unique_ptr<Entry> PolicyFile::FindPolicy(const Target& target)
{
    const std::string subject = SubjectFor(target);
    return Calling(subject,
                   [&] { return std::make_unique<PolicyEntry>(m_file.Policy(Valid(target.softwareId)), subject); });
}

std::unique_ptr<TaskEntry> PolicyFile::FindTask(const Target& target)
{
    const std::string subject = SubjectFor(target);
    return Calling(subject, [&] {
        return std::make_unique<TaskEntry>(m_file.Task(Valid(target.softwareId), Valid(*target.taskId)), subject);
    });
}

std::unique_ptr<Entry> PolicyFile::Create(const Target& target, const TaskFields& fields)
{
    const std::string subject = SubjectFor(target);
    static_cast<void>(Valid(target.softwareId));
    if (!target.taskId) {
        zupm::Policy policy(tool::Create<IPolicyProduct>());
        // Not SetSoftwareId: an ID that XML cannot hold is reported as the one that the file does not have.
        static_cast<void>(policy.Get()->put_SoftwareID(client::Argument(target.softwareId)));
        return std::make_unique<PolicyEntry>(std::move(policy), subject);
    }
    static_cast<void>(Valid(*target.taskId));
    auto task = std::make_unique<TaskEntry>(zupm::Task(tool::Create<IPolicyTask>()), subject);
    task->PutIds(target.softwareId, *target.taskId);
    task->PutDefaults(*target.taskId);
    task->PutFields(fields);
    return task;
}

void PolicyFile::Remove(const Target& target)
{
    static_cast<void>(Valid(target.softwareId));
    Calling(SubjectFor(target), [&] {
        if (target.taskId) {
            m_file.RemoveTask(target.softwareId, Valid(*target.taskId));
        } else {
            m_file.RemovePolicy(target.softwareId);
        }
    });
}

void PolicyFile::Write(const std::string& path)
{
    try {
        m_file.SaveAs(Valid(path));
    } catch (const Error& error) {
        // The sentence of this code is about reading; the usual reason here is a pipe.
        if (error.Code() == result::NotSupported) {
            throw CallError(error.Code(), path,
                            "Nothing reads from this pipe, or this kind of file cannot be written.");
        }
        throw CallError(error, path);
    }
}

void PolicyFile::Commit(bool force)
{
    Calling(m_path, [&] { m_edit->Commit(IfChangedFor(force)); });
}

void PolicyFile::RehearseCommit(bool force)
{
    Calling(m_path, [&] { m_edit->Rehearse(IfChangedFor(force)); });
}

FileVersions PolicyFile::Versions()
{
    return Calling(m_path, [&] {
        return FileVersions{m_file.PolicyVersion(), m_file.TaskVersion(), m_file.AssignmentList()};
    });
}

Notices PolicyFile::Notices()
{
    ComPtr<IPolicyNotices> list;
    Check(QueryFor<IPolicyFileContents>(*m_file.Get(), IID_IPolicyFileContents, m_path)->get_Notices(list.Put()),
          m_path);
    return {std::move(list), m_path};
}

Counts PolicyFile::Count()
{
    const auto contents = QueryFor<IPolicyFileContents>(*m_file.Get(), IID_IPolicyFileContents, m_path);
    Counts counts;
    counts.policies = ForEachName(
        m_path, [&](IPolicyNames** slot) { return contents->get_PolicyIDs(slot); },
        [&](BSTR softwareId) {
            ComPtr<IUnknown> policy;
            Check(m_file.Get()->GetPolicy(softwareId, policy.Put()), m_path);
            CountEntry(*policy.Get(), counts);
        });
    const auto countTasks = [&](BSTR softwareId) {
        counts.tasks += ForEachName(
            m_path, [&](IPolicyNames** slot) { return contents->GetTaskIDs(softwareId, slot); },
            [&](BSTR taskId) {
                ComPtr<IUnknown> task;
                Check(m_file.Get()->GetTask(softwareId, taskId, task.Put()), m_path);
                CountEntry(*task.Get(), counts);
            });
    };
    ForEachName(
        m_path, [&](IPolicyNames** slot) { return contents->get_TaskSoftwareIDs(slot); }, countTasks);
    return counts;
}

void PolicyFile::CountEntry(IUnknown& entry, Counts& counts)
{
    const auto sections = QueryFor<IPolicySections>(entry, IID_IPolicySections, m_path);
    const auto countSettings = [&](BSTR section) {
        counts.settings += ForEachName(
            m_path, [&](IPolicyNames** slot) { return sections->GetSettingNames(section, slot); }, [](BSTR) {});
    };
    counts.sections += ForEachName(
        m_path, [&](IPolicyNames** slot) { return sections->get_SectionNames(slot); }, countSettings);
}

std::string PolicyFile::SubjectFor(const Target& target) const
{
    return m_path + ": " + Describe(target);
}

}  // namespace zupm::tool
