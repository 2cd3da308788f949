// Policies, tasks and the enumerator as objects.
#include "com/Log.h"
#include "com/ObjectForms.h"
#include "com/PlatformError.h"
#include "com/Strings.h"
#include "policy/CPolicyProduct.h"
#include "policyfile/CPolicyFile.h"
#include "policyfile/CTaskInfo.h"
#include "task/CPolicyTask.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

namespace {

/// Hands a reference out. The result is ignored: our own objects always have this interface.
void StoreObject(IUnknown& object, IUnknown** slot) noexcept
{
    static_cast<void>(object.QueryInterface(IID_IUnknown, reinterpret_cast<void**>(slot)));
}

void AppendAll(CPolicyFileData::TaskIndex& index, CTaskInfo& list) noexcept
{
    for (const auto& software : index.Sort()) {
        CPolicyFileData::TaskMap& tasks = *software.value;
        for (const auto& task : tasks.Sort()) {
            // A pair that finds no memory is left out.
            static_cast<void>(list.Append(index.NameOf(software), tasks.NameOf(task)));
        }
    }
}

}  // namespace

HRESULT CPolicyFile::GetPolicy(BSTR strSoftwareID, IUnknown** pPolicy) noexcept
{
    return Call(u"CPolicyFile::GetPolicy()", [&]() -> result::Code {
        if (pPolicy == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        const result::Code code = CheckInitialised();
        return code < 0 ? code : HandOutPolicy(TextOf(strSoftwareID), pPolicy);
    });
}

result::Code CPolicyFile::HandOutPolicy(std::u16string_view softwareId, IUnknown** slot)
{
    const CPolicyRef* found = nullptr;
    if (const result::Code code = m_data.FindPolicyRef(softwareId, found); code < 0) {
        return code;
    }
    ComPtr<CPolicyProduct> product;
    const result::Code created = CreatePlain(product);
    if (created < 0) {
        return created;
    }
    // Given: see docs/given-oddities.md, "unbound objects".
    // An object that could not be bound is handed out all the same; its own operations give NotInitialised.
    static_cast<void>(product->BindToFileElement(found->GetElement(), softwareId, found->GetFirstWithId()));
    StoreObject(static_cast<IPolicyProduct&>(*product), slot);
    return created;
}

HRESULT CPolicyFile::GetTask(BSTR strSoftwareID, BSTR strTaskID, IUnknown** pTask) noexcept
{
    return Call(u"CPolicyFile::GetTask()", [&]() -> result::Code {
        if (pTask == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        const result::Code code = CheckInitialised();
        return code < 0 ? code : HandOutTask(TextOf(strSoftwareID), TextOf(strTaskID), pTask);
    });
}

result::Code CPolicyFile::HandOutTask(std::u16string_view softwareId, std::u16string_view taskId, IUnknown** slot)
{
    const CTaskRef* found = nullptr;
    if (const result::Code code = m_data.FindTaskRef(softwareId, taskId, found); code < 0) {
        return code;
    }
    ComPtr<CPolicyTask> task;
    const result::Code created = CreatePlain(task);
    if (created < 0) {
        return created;
    }
    // As for policies.
    static_cast<void>(task->BindFromElements(found->GetGroup(), found->GetElement()));
    StoreObject(static_cast<IPolicyTask&>(*task), slot);
    return created;
}

HRESULT CPolicyFile::GetTaskInfo(IUnknown** pTaskInfo) noexcept
{
    constexpr std::u16string_view kOperation = u"CPolicyFile::GetTaskInfo()";
    return Call(kOperation, [&]() -> result::Code {
        if (pTaskInfo == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        *pTaskInfo = nullptr;
        if (const result::Code code = CheckInitialised(); code < 0) {
            return code;
        }
        try {
            return HandOutTaskInfo(pTaskInfo);
        } catch (const PlatformError& error) {
            LogPlatformError(kOperation, error.GetCode(), error.GetDescription());
            return result::PlatformException;
        } catch (...) {
            LogException(kOperation);
            return result::Unexpected;
        }
    });
}

result::Code CPolicyFile::HandOutTaskInfo(IUnknown** slot)
{
    BeforeTaskInfo();
    ComPtr<CTaskInfo> list;
    if (const result::Code code = CreatePlain(list); code < 0) {
        return code;
    }
    AppendAll(m_data.Tasks(), *list);
    StoreObject(static_cast<ITaskInfo&>(*list), slot);
    return result::Success;
}

}  // namespace zupm
