#include "client/PolicyFile.h"

#include "client/PolicyEntry.h"
#include "com/ObjectFactory.h"
#include "text/Utf8.h"
#include "xml/DocumentReader.h"

namespace zupm::tool {
namespace {

template <typename Interface>
ComPtr<Interface> QueryFor(IUnknown& object, REFIID iid, const std::string& subject)
{
    ComPtr<Interface> wanted;
    Check(object.QueryInterface(iid, wanted.VoidSlot()), subject);
    return wanted;
}

template <typename Getter>
std::string PropertyText(IPolicyFile& file, Getter getter, const std::string& subject)
{
    Bstr text;
    Check((file.*getter)(text.Slot()), subject);
    return ToUtf8(text.Text());
}

}  // namespace

PolicyFile::PolicyFile(const std::string& path, Access access)
    : m_file(tool::Create<IPolicyFile>(CLSID_PolicyFile, IID_IPolicyFile)), m_path(path)
{
    Check(m_file->InitializeFile(Bstr(FromUtf8(path)).Get(), access == Access::ReadOnly ? 1 : 0), path);
}

PolicyFile::PolicyFile(const std::string& path, std::chrono::seconds patience)
    : m_file(tool::Create<IPolicyFile>(CLSID_PolicyFile, IID_IPolicyFile)), m_path(path)
{
    m_edit = QueryFor<IPolicyFileEdit>(*m_file.Get(), IID_IPolicyFileEdit, path);
    const auto milliseconds = static_cast<LONG>(std::chrono::milliseconds(patience).count());
    Check(m_edit->OpenForEdit(Bstr(FromUtf8(path)).Get(), milliseconds), path);
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
    Check(m_file->GetPolicy(Bstr(FromUtf8(target.softwareId)).Get(), object.Slot()), subject);
    return std::make_unique<PolicyEntry>(QueryFor<IPolicyProduct>(*object.Get(), IID_IPolicyProduct, subject), subject);
}

std::unique_ptr<TaskEntry> PolicyFile::FindTask(const Target& target)
{
    const std::string subject = SubjectFor(target);
    ComPtr<IUnknown> object;
    Check(m_file->GetTask(Bstr(FromUtf8(target.softwareId)).Get(), Bstr(FromUtf8(*target.taskId)).Get(), object.Slot()),
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
    Check(m_file->WriteFile(Bstr(FromUtf8(path)).Get(), 0), path);
}

void PolicyFile::Commit(bool force)
{
    Check(m_edit->CommitEdit(force ? 1 : 0), m_path);
}

void PolicyFile::RehearseCommit(bool force)
{
    Check(m_edit->RehearseCommit(force ? 1 : 0), m_path);
}

FileContents PolicyFile::Contents()
{
    FileContents contents = ReadDocument(Text());
    contents.policyVersion = PropertyText(*m_file.Get(), &IPolicyFile::get_VersionPolicy, m_path);
    contents.taskVersion = PropertyText(*m_file.Get(), &IPolicyFile::get_VersionTask, m_path);
    contents.assignmentList = PropertyText(*m_file.Get(), &IPolicyFile::get_PolicyAssignmentList, m_path);
    return contents;
}

std::string PolicyFile::Text()
{
    Bstr text;
    Check(m_file->WriteFileBuffer(text.Slot()), m_path);
    if (text.Get() == nullptr) {
        // WriteFileBuffer reports success in every case and leaves the slot empty when memory ran out.
        throw std::bad_alloc();
    }
    return ToUtf8(text.Text());
}

std::string PolicyFile::SubjectFor(const Target& target) const
{
    return m_path + ": " + Describe(target);
}

}  // namespace zupm::tool
