#include "tools/zupolicy/client/PolicyFile.h"

#include "tools/zupolicy/client/Component.h"
#include "tools/zupolicy/client/Entry.h"
#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/model/ReadFile.h"

namespace zupm::tool {
namespace {

template <typename Interface>
ComPtr<Interface> QueryFor(IUnknown& object, REFIID iid, const std::string& file)
{
    ComPtr<Interface> wanted;
    Check(object.QueryInterface(iid, wanted.PutVoid()), {file, {}});
    return wanted;
}

IfChanged IfChangedFor(bool force)
{
    return force ? IfChanged::Overwrite : IfChanged::Refuse;
}

}  // namespace

void RequireName(const std::string& path)
{
    if (!IsUtf8(path)) {
        throw Failure(ExitCode::FileError, path, "the name is not valid UTF-8");
    }
}

PolicyFile::PolicyFile(const std::string& path, Access access) : m_path(path), m_file(tool::Create<IPolicyFile>(), path)
{
    RequireName(path);
    Reading(path, [&](const std::string& source) {
        Calling({source, {}}, [&] { model::Load(m_file, source, access == Access::ReadOnly); });
    });
}

PolicyFile::PolicyFile(const std::string& path, std::chrono::seconds patience)
    : m_path(path), m_file(tool::Create<IPolicyFile>(), path)
{
    RequireName(path);
    RequireReplaceable(path);
    m_edit = Calling({path, {}}, [&] { return zupm::Edit(m_file, patience); });
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
    const Subject subject = SubjectFor(target);
    return Calling(subject,
                   [&] { return std::make_unique<PolicyEntry>(m_file.Policy(Valid(target.softwareId)), subject); });
}

std::unique_ptr<TaskEntry> PolicyFile::FindTask(const Target& target)
{
    const Subject subject = SubjectFor(target);
    return Calling(subject, [&] {
        return std::make_unique<TaskEntry>(m_file.Task(Valid(target.softwareId), Valid(*target.taskId)), subject);
    });
}

std::unique_ptr<Entry> PolicyFile::Create(const Target& target, const TaskFields& fields)
{
    const Subject subject = SubjectFor(target);
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
            throw ProblemFailure({error.Code(),
                                  ExitCode::FileError,
                                  path,
                                  0,
                                  0,
                                  "Nothing reads from this pipe, or this kind of file cannot be written.",
                                  {}});
        }
        throw ProblemFailure(ProblemOf(error, {path, {}}));
    }
}

void PolicyFile::Commit(bool force)
{
    Calling({m_path, {}}, [&] { m_edit->Commit(IfChangedFor(force)); });
}

void PolicyFile::RehearseCommit(bool force)
{
    Calling({m_path, {}}, [&] { m_edit->Rehearse(IfChangedFor(force)); });
}

FileVersions PolicyFile::Versions()
{
    return Calling({m_path, {}}, [&] {
        return FileVersions{m_file.PolicyVersion(), m_file.TaskVersion(), m_file.AssignmentList()};
    });
}

Notices PolicyFile::Notices()
{
    ComPtr<IPolicyNotices> list;
    Check(QueryFor<IPolicyFileContents>(*m_file.Get(), IID_IPolicyFileContents, m_path)->get_Notices(list.Put()),
          {m_path, {}});
    return {std::move(list), m_path};
}

Subject PolicyFile::SubjectFor(const Target& target) const
{
    return {m_path, Describe(target)};
}

}  // namespace zupm::tool
