// The two indexes.
#include "com/Log.h"
#include "policyfile/CPolicyFileData.h"
#include "settings/CatchAll.h"
#include "settings/Schema.h"

namespace zupm {

using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

result::Code CPolicyFileData::InitializePolicyMap() noexcept
{
    // Given: see docs/given-oddities.md, "names of another class".
    return CatchAll(u"CPolicyFile::InitializePolicyMap()", [&]() -> result::Code {
        std::u16string softwareId;
        ForEachPolicy(Root(), [&](const Element& policy) { AddPolicies(policy, softwareId); });
        return result::Success;
    });
}

void CPolicyFileData::AddPolicies(const Element& policy, std::u16string& softwareId)
{
    // Equal IDs are first-wins, so among children that are all products the one in the index is the first with its ID.
    bool areProducts = true;
    for (const Element product : ElementChildren(policy)) {
        const bool isProduct = product.NameIs(schema::kProduct);
        areProducts = areProducts && isProduct;
        if (!isProduct || !product.ReadAttribute(schema::kSoftwareId, softwareId)) {
            continue;
        }
        if (!m_policies.Insert(softwareId, [&] { return CPolicyRef(policy, product, areProducts); }).second) {
            // Given: see docs/given-oddities.md, "duplicates logged again".
            LogDuplicate(u"CPolicyFile::InitializePolicyMap() -- SoftwareID %s exists already in the policy map",
                         softwareId);
        }
    }
}

result::Code CPolicyFileData::InitializeTaskMap() noexcept
{
    return CatchAll(u"CPolicyFile::InitializeTaskMap()", [&]() -> result::Code {
        std::u16string softwareId;
        std::u16string taskId;
        ForEachTaskGroup(Root(), [&](const Element& group) { AddTasks(group, softwareId, taskId); });
        return result::Success;
    });
}

void CPolicyFileData::AddTasks(const Element& group, std::u16string& softwareId, std::u16string& taskId)
{
    if (!group.ReadAttribute(schema::kSoftwareId, softwareId) || !group.ReadAttribute(schema::kTaskId, taskId)) {
        return;
    }
    // The keys are the group's own, so every task after its first one is a duplicate. Keys can be long and tasks many:
    // the index is searched once.
    bool isFirst = true;
    ForEachChild(group, schema::kTask, [&](const Element& task) {
        if (!isFirst || !InsertTask(softwareId, taskId, CTaskRef(group, task))) {
            LogDuplicate(
                u"CPolicyFile::InitializeTaskMap() -- TaskID %s exists already in the task map for Software %s", taskId,
                softwareId);
        }
        isFirst = false;
    });
}

bool CPolicyFileData::InsertTask(std::u16string_view softwareId, std::u16string_view taskId, const CTaskRef& task)
{
    TaskMap& tasks = **m_tasks.Insert(softwareId, [] { return std::make_unique<TaskMap>(); }).first;
    return tasks.Insert(taskId, [&] { return task; }).second;
}

result::Code CPolicyFileData::DeinitializePolicyMap() noexcept
{
    return CatchAll(u"CPolicyFile::DeinitializePolicyMap()", [&]() -> result::Code {
        m_policies.Clear();
        return result::Success;
    });
}

result::Code CPolicyFileData::DeinitializeTaskMap() noexcept
{
    return CatchAll(u"CPolicyFile::DeinitializeTaskMap()", [&]() -> result::Code {
        m_tasks.Clear();
        return result::Success;
    });
}

result::Code CPolicyFileData::FindPolicyRef(std::u16string_view softwareId, const CPolicyRef*& found) const noexcept
{
    if (!m_initialised) {
        return result::NotInitialised;
    }
    const CPolicyRef* const policy = m_policies.Find(softwareId);
    if (policy == nullptr) {
        return result::PolicyNotFound;
    }
    found = policy;
    return result::Success;
}

result::Code CPolicyFileData::FindTaskRef(std::u16string_view softwareId, std::u16string_view taskId,
                                          const CTaskRef*& found) const noexcept
{
    found = nullptr;
    if (!m_initialised) {
        return result::NotInitialised;
    }
    const std::unique_ptr<TaskMap>* const tasks = m_tasks.Find(softwareId);
    if (tasks == nullptr) {
        return result::TaskNotFound;
    }
    // Given: see docs/given-oddities.md, "null entries".
    if (!*tasks) {
        return result::NotCreated;
    }
    found = (*tasks)->Find(taskId);
    return found == nullptr ? result::TaskNotFound : result::Success;
}

NameList CPolicyFileData::PolicyIds() const
{
    return NamesOf(m_policies, [](const CPolicyRef&) { return true; });
}

NameList CPolicyFileData::TaskSoftwareIds() const
{
    // A map is empty when memory ran out before its first task was added.
    return NamesOf(m_tasks, [](const std::unique_ptr<TaskMap>& tasks) { return tasks && tasks->Size() != 0; });
}

NameList CPolicyFileData::TaskIds(std::u16string_view softwareId) const
{
    const std::unique_ptr<TaskMap>* const tasks = m_tasks.Find(softwareId);
    return tasks != nullptr && *tasks ? NamesOf(**tasks, [](const CTaskRef&) { return true; }) : NameList();
}

}  // namespace zupm
