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

template <typename Getter>
std::string PropertyText(IPolicyFile& file, Getter getter, const std::string& subject)
{
    Bstr text;
    Check((file.*getter)(text.Slot()), subject);
    return ToUtf8(text.Text());
}

bool IsFolder(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::is_directory(std::filesystem::path(FromUtf8(path)), ignored);
}

void CheckOpened(HRESULT result, const std::string& path)
{
    // The system reports a denied access, or a name that is not valid.
    if (result < 0 && IsFolder(path)) {
        throw CallError(result, path, "is a folder");
    }
    Check(result, path);
}

}  // namespace

void RequireName(const std::string& path)
{
    if (!IsUtf8(path)) {
        throw Failure(ExitCode::FileError, path + ": the name is not valid UTF-8");
    }
}

PolicyFile::PolicyFile(const std::string& path, Access access)
    : m_file(tool::Create<IPolicyFile>(CLSID_PolicyFile, IID_IPolicyFile)), m_path(path)
{
    RequireName(path);
    CheckOpened(m_file->InitializeFile(Bstr(FromUtf8(path)).Get(), access == Access::ReadOnly ? 1 : 0), path);
}

PolicyFile::PolicyFile(const std::string& path, std::chrono::seconds patience)
    : m_file(tool::Create<IPolicyFile>(CLSID_PolicyFile, IID_IPolicyFile)), m_path(path)
{
    RequireName(path);
    m_edit = QueryFor<IPolicyFileEdit>(*m_file.Get(), IID_IPolicyFileEdit, path);
    const auto milliseconds = static_cast<LONG>(std::chrono::milliseconds(patience).count());
    CheckOpened(m_edit->OpenForEdit(Bstr(FromUtf8(path)).Get(), milliseconds), path);
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
    ComPtr<IUnknown> object;
    Check(m_file->GetPolicy(Bstr(FromUtf8(target.softwareId)).Get(), object.Put()), subject);
    return std::make_unique<PolicyEntry>(QueryFor<IPolicyProduct>(*object.Get(), IID_IPolicyProduct, subject), subject);
}

std::unique_ptr<TaskEntry> PolicyFile::FindTask(const Target& target)
{
    const std::string subject = SubjectFor(target);
    ComPtr<IUnknown> object;
    Check(m_file->GetTask(Bstr(FromUtf8(target.softwareId)).Get(), Bstr(FromUtf8(*target.taskId)).Get(), object.Put()),
          subject);
    return std::make_unique<TaskEntry>(QueryFor<IPolicyTask>(*object.Get(), IID_IPolicyTask, subject), subject);
}

std::unique_ptr<Entry> PolicyFile::Create(const Target& target, const TaskFields& fields)
{
    const std::string subject = SubjectFor(target);
    const std::u16string softwareId = FromUtf8(target.softwareId);
    if (!target.taskId) {
        auto policy = std::make_unique<PolicyEntry>(
            tool::Create<IPolicyProduct>(CLSID_PolicyProduct, IID_IPolicyProduct), subject);
        policy->PutSoftwareId(softwareId);
        return policy;
    }
    const std::u16string taskId = FromUtf8(*target.taskId);
    auto task = std::make_unique<TaskEntry>(tool::Create<IPolicyTask>(CLSID_PolicyTask, IID_IPolicyTask), subject);
    task->PutIds(softwareId, taskId);
    task->PutDefaults(taskId);
    task->PutFields(fields);
    return task;
}

void PolicyFile::Remove(const Target& target)
{
    const Bstr softwareId(FromUtf8(target.softwareId));
    if (target.taskId) {
        Check(m_file->RemoveTask(softwareId.Get(), Bstr(FromUtf8(*target.taskId)).Get()), SubjectFor(target));
    } else {
        Check(m_file->RemovePolicy(softwareId.Get()), SubjectFor(target));
    }
}

void PolicyFile::Write(const std::string& path)
{
    const HRESULT result = m_file->WriteFile(Bstr(FromUtf8(path)).Get(), 0);
    // The sentence of this code is about reading; the usual reason here is a pipe.
    if (static_cast<result::Code>(result) == result::NotSupported) {
        throw CallError(result, path, "Nothing reads from this pipe, or this kind of file cannot be written.");
    }
    Check(result, path);
}

void PolicyFile::Commit(bool force)
{
    Check(m_edit->CommitEdit(force ? 1 : 0), m_path);
}

void PolicyFile::RehearseCommit(bool force)
{
    Check(m_edit->RehearseCommit(force ? 1 : 0), m_path);
}

FileVersions PolicyFile::Versions()
{
    return {PropertyText(*m_file.Get(), &IPolicyFile::get_VersionPolicy, m_path),
            PropertyText(*m_file.Get(), &IPolicyFile::get_VersionTask, m_path),
            PropertyText(*m_file.Get(), &IPolicyFile::get_PolicyAssignmentList, m_path)};
}

Notices PolicyFile::Notices()
{
    ComPtr<IPolicyNotices> list;
    Check(QueryFor<IPolicyFileContents>(*m_file.Get(), IID_IPolicyFileContents, m_path)->get_Notices(list.Put()),
          m_path);
    return {std::move(list), m_path};
}

std::string PolicyFile::SubjectFor(const Target& target) const
{
    return m_path + ": " + Describe(target);
}

}  // namespace zupm::tool
