// The two indexes.
#include <utility>

#include "com/Log.h"
#include "policyfile/CPolicyFileData.h"
#include "settings/CatchAll.h"
#include "settings/Schema.h"

namespace zupm {

using AdvXMLParser::Attribute;
using AdvXMLParser::Element;

result::Code CPolicyFileData::InitializePolicyMap() noexcept
{
    // Given: see docs/given-oddities.md, "names of another class".
    return CatchAll(u"CPolicyFile::InitializePolicyMap()", [&]() -> result::Code {
        ForEachPolicy(Root(), [&](const Element& policy) {
            ForEachChild(policy, schema::kProduct, [&](const Element& product) { AddPolicy(policy, product); });
        });
        return result::Success;
    });
}

void CPolicyFileData::AddPolicy(const Element& policy, const Element& product)
{
    const Attribute attribute = product.GetAttribute(schema::kSoftwareId);
    if (attribute.IsNull()) {
        return;
    }
    std::u16string softwareId = attribute.GetText();
    const auto place = m_policies.lower_bound(softwareId);
    if (place != m_policies.end() && place->first == softwareId) {
        // Given: see docs/given-oddities.md, "duplicates logged again".
        LogDuplicate(u"CPolicyFile::InitializePolicyMap() -- SoftwareID %s exists already in the policy map",
                     softwareId);
        return;
    }
    m_policies.emplace_hint(place, std::move(softwareId), std::make_unique<CPolicyRef>(policy, product));
}

result::Code CPolicyFileData::InitializeTaskMap() noexcept
{
    return CatchAll(u"CPolicyFile::InitializeTaskMap()", [&]() -> result::Code {
        ForEachTaskGroup(Root(), [&](const Element& group) { AddTasks(group); });
        return result::Success;
    });
}

void CPolicyFileData::AddTasks(const Element& group)
{
    const Attribute softwareAttribute = group.GetAttribute(schema::kSoftwareId);
    const Attribute taskAttribute = group.GetAttribute(schema::kTaskId);
    if (softwareAttribute.IsNull() || taskAttribute.IsNull()) {
        return;
    }
    const std::u16string softwareId = softwareAttribute.GetText();
    const std::u16string taskId = taskAttribute.GetText();
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

bool CPolicyFileData::InsertTask(const std::u16string& softwareId, const std::u16string& taskId, const CTaskRef& task)
{
    auto entry = m_tasks.lower_bound(softwareId);
    if (entry == m_tasks.end() || entry->first != softwareId) {
        entry = m_tasks.emplace_hint(entry, softwareId, std::make_unique<TaskMap>());
    }
    TaskMap& tasks = *entry->second;
    const auto place = tasks.lower_bound(taskId);
    if (place != tasks.end() && place->first == taskId) {
        return false;
    }
    tasks.emplace_hint(place, taskId, std::make_unique<CTaskRef>(task));
    return true;
}

result::Code CPolicyFileData::DeinitializePolicyMap() noexcept
{
    return CatchAll(u"CPolicyFile::DeinitializePolicyMap()", [&]() -> result::Code {
        m_policies.clear();
        return result::Success;
    });
}

result::Code CPolicyFileData::DeinitializeTaskMap() noexcept
{
    return CatchAll(u"CPolicyFile::DeinitializeTaskMap()", [&]() -> result::Code {
        m_tasks.clear();
        return result::Success;
    });
}

result::Code CPolicyFileData::FindPolicyRef(std::u16string_view softwareId, const CPolicyRef*& found) const noexcept
{
    if (!m_initialised) {
        return result::NotInitialised;
    }
    const auto entry = m_policies.find(softwareId);
    if (entry == m_policies.end()) {
        return result::PolicyNotFound;
    }
    found = entry->second.get();
    return result::Success;
}

result::Code CPolicyFileData::FindTaskRef(std::u16string_view softwareId, std::u16string_view taskId,
                                          const CTaskRef*& found) const noexcept
{
    found = nullptr;
    if (!m_initialised) {
        return result::NotInitialised;
    }
    const auto software = m_tasks.find(softwareId);
    if (software == m_tasks.end()) {
        return result::TaskNotFound;
    }
    // Given: see docs/given-oddities.md, "null entries".
    if (!software->second) {
        return result::NotCreated;
    }
    const auto task = software->second->find(taskId);
    if (task == software->second->end()) {
        return result::TaskNotFound;
    }
    found = task->second.get();
    return result::Success;
}

}  // namespace zupm
