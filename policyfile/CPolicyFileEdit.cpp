// Adding and removing policies and tasks.
#include <algorithm>
#include <new>

#include "com/IncomingObject.h"
#include "com/ObjectForms.h"
#include "com/Strings.h"
#include "policy/CPolicyProduct.h"
#include "policyfile/CPolicyFile.h"
#include "settings/RequireXmlText.h"
#include "task/CPolicyTask.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

using AdvXMLParser::Element;

// Given: see docs/given-oddities.md, "overwrite".
HRESULT CPolicyFile::AddPolicy(IUnknown* pPolicy, LONG /*bOverwrite*/) noexcept
{
    return Call(u"CPolicyFile::AddPolicy()", [&](std::u16string& detail) -> result::Code {
        const CriticalSectionLock lock(m_lock);
        if (const result::Code code = CheckWritable(); code < 0) {
            return code;
        }
        if (const result::Code code = CheckInitialised(); code < 0) {
            return code;
        }
        const CPolicyFileData::Documents documents = m_data.HoldDocuments();
        const IncomingObject<IPolicyProduct> incoming(pPolicy, IID_IPolicyProduct);
        return incoming ? PutPolicy(*incoming, documents, detail) : result::BadArgument;
    });
}

// Given: see docs/given-oddities.md, "overwrite".
HRESULT CPolicyFile::AddTask(IUnknown* pTask, LONG /*bOverwrite*/) noexcept
{
    return Call(u"CPolicyFile::AddTask()", [&](std::u16string& detail) -> result::Code {
        const CriticalSectionLock lock(m_lock);
        if (const result::Code code = CheckWritable(); code < 0) {
            return code;
        }
        if (pTask == nullptr) {
            return result::BadArgument;
        }
        if (const result::Code code = CheckInitialised(); code < 0) {
            return code;
        }
        const CPolicyFileData::Documents documents = m_data.HoldDocuments();
        const IncomingObject<IPolicyTask> incoming(pTask, IID_IPolicyTask);
        return incoming ? PutTask(*incoming, documents, detail) : result::BadArgument;
    });
}

result::Code CPolicyFile::CheckStillLoaded(const CPolicyFileData::Documents& documents, std::u16string& detail) const
{
    if (m_data.HasLoaded(documents)) {
        return result::Success;
    }
    detail = u"The file was loaded again while the object was asked for its data.";
    return result::NotInitialised;
}

result::Code CPolicyFile::PutPolicy(IPolicyProduct& incoming, const CPolicyFileData::Documents& documents,
                                    std::u16string& detail)
{
    Bstr idText;
    if (const result::Code code = incoming.get_SoftwareID(idText.Put()); code < 0) {
        return code;
    }
    if (const result::Code code = CheckStillLoaded(documents, detail); code < 0) {
        return code;
    }
    const std::u16string softwareId = idText.Text();
    RequireXmlText(softwareId);
    std::unique_ptr<CPolicyRef> place;
    if (const result::Code code = CopyPolicyRef(softwareId, place); code < 0) {
        return code;
    }
    if (const result::Code code = m_data.DeinitializePolicyMap(); code < 0) {
        return code;
    }
    if (!place) {
        if (const result::Code code = m_data.CreateProductSlot(softwareId, place); code < 0) {
            return code;
        }
    }
    // Given: see docs/given-oddities.md, "a slot made to be deleted".
    place->GetProduct().Delete();
    Bstr xml;
    if (const result::Code code = incoming.get_PolicyData(xml.Put()); code < 0) {
        return code;
    }
    if (const result::Code code = CheckStillLoaded(documents, detail); code < 0) {
        return code;
    }
    const result::Code code = WriteProduct(xml.Text(), place->GetElement(), detail);
    return code < 0 ? code : m_data.InitializePolicyMap();
}

result::Code CPolicyFile::WriteProduct(std::u16string_view xml, const Element& policy, std::u16string& detail)
{
    ComPtr<CPolicyProduct> product;
    if (const result::Code code = CreatePlain(product); code < 0) {
        return code;
    }
    if (const result::Code code = product->BindFromXmlText(xml, detail); code < 0) {
        return code;
    }
    // Given: see docs/given-oddities.md, "two rules for versions".
    // Unlike a task's, the new version replaces the old one even when it is smaller.
    std::uint64_t version = m_properties.policyVersion;
    const result::Code code = product->WriteIntoFileElement(policy, version);
    m_properties.policyVersion = version;
    return code;
}

result::Code CPolicyFile::PutTask(IPolicyTask& incoming, const CPolicyFileData::Documents& documents,
                                  std::u16string& detail)
{
    Bstr softwareText;
    if (const result::Code code = incoming.get_SoftwareID(softwareText.Put()); code < 0) {
        return code;
    }
    Bstr taskText;
    if (const result::Code code = incoming.get_TaskID(taskText.Put()); code < 0) {
        return code;
    }
    if (const result::Code code = CheckStillLoaded(documents, detail); code < 0) {
        return code;
    }
    const std::u16string softwareId = softwareText.Text();
    const std::u16string taskId = taskText.Text();
    RequireXmlText(softwareId);
    RequireXmlText(taskId);
    std::unique_ptr<CTaskRef> place;
    if (const result::Code code = CopyTaskRef(softwareId, taskId, place); code < 0) {
        return code;
    }
    if (const result::Code code = m_data.DeinitializeTaskMap(); code < 0) {
        return code;
    }
    if (!place) {
        if (const result::Code code = m_data.CreateTaskSlot(place); code < 0) {
            return code;
        }
    }
    place->GetElement().Delete();
    Bstr xml;
    if (const result::Code code = incoming.get_TaskData(xml.Put()); code < 0) {
        return code;
    }
    if (const result::Code code = CheckStillLoaded(documents, detail); code < 0) {
        return code;
    }
    const result::Code code = WriteTask(xml.Text(), place->GetGroup(), detail);
    return code < 0 ? code : m_data.InitializeTaskMap();
}

result::Code CPolicyFile::WriteTask(std::u16string_view xml, const Element& group, std::u16string& detail)
{
    ComPtr<CPolicyTask> task;
    if (const result::Code code = CreatePlain(task); code < 0) {
        return code;
    }
    if (const result::Code code = task->BindFromText(xml, detail); code < 0) {
        return code;
    }
    std::uint64_t version = 0;
    const result::Code code = task->CopyIntoFile(group, version);
    // Given: see docs/given-oddities.md, "version of a failed add".
    m_properties.taskVersion = std::max(m_properties.taskVersion.load(), version);
    return code;
}

HRESULT CPolicyFile::RemovePolicy(BSTR strSoftwareID) noexcept
{
    return Call(u"CPolicyFile::RemovePolicy()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        if (const result::Code code = CheckWritable(); code < 0) {
            return code;
        }
        const result::Code code = CheckInitialised();
        return code < 0 ? code : DropPolicy(TextOf(strSoftwareID));
    });
}

result::Code CPolicyFile::DropPolicy(std::u16string_view softwareId)
{
    std::unique_ptr<CPolicyRef> place;
    if (const result::Code code = CopyPolicyRef(softwareId, place); code < 0) {
        return code;
    }
    if (!place) {
        return result::PolicyNotFound;
    }
    if (const result::Code code = m_data.DeinitializePolicyMap(); code < 0) {
        return code;
    }
    // Given: see docs/given-oddities.md, "the wrapper stays".
    // The "Policy" around the product stays, with its attributes and its other children.
    place->GetProduct().Delete();
    return m_data.InitializePolicyMap();
}

HRESULT CPolicyFile::RemoveTask(BSTR strSoftwareID, BSTR strTaskID) noexcept
{
    return Call(u"CPolicyFile::RemoveTask()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        if (const result::Code code = CheckWritable(); code < 0) {
            return code;
        }
        const result::Code code = CheckInitialised();
        return code < 0 ? code : DropTask(TextOf(strSoftwareID), TextOf(strTaskID));
    });
}

result::Code CPolicyFile::DropTask(std::u16string_view softwareId, std::u16string_view taskId)
{
    std::unique_ptr<CTaskRef> place;
    if (const result::Code code = CopyTaskRef(softwareId, taskId, place); code < 0) {
        return code;
    }
    if (!place) {
        return result::TaskNotFound;
    }
    if (const result::Code code = m_data.DeinitializeTaskMap(); code < 0) {
        return code;
    }
    // Given: see docs/given-oddities.md, "the group goes".
    // Every task that was added has a group of its own, so the whole group goes.
    place->GetGroup().Delete();
    return m_data.InitializeTaskMap();
}

result::Code CPolicyFile::CopyPolicyRef(std::u16string_view softwareId, std::unique_ptr<CPolicyRef>& copy) const
{
    const CPolicyRef* found = nullptr;
    if (m_data.FindPolicyRef(softwareId, found) < 0) {
        return result::Success;
    }
    copy.reset(new (std::nothrow) CPolicyRef(*found));
    return copy ? result::Success : result::AllocationFailed;
}

result::Code CPolicyFile::CopyTaskRef(std::u16string_view softwareId, std::u16string_view taskId,
                                      std::unique_ptr<CTaskRef>& copy) const
{
    const CTaskRef* found = nullptr;
    // Given: see docs/given-oddities.md, "null becomes not found".
    if (m_data.FindTaskRef(softwareId, taskId, found) < 0) {
        return result::Success;
    }
    copy.reset(new (std::nothrow) CTaskRef(*found));
    return copy ? result::Success : result::AllocationFailed;
}

}  // namespace zupm
