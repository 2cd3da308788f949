// Places for new entries, and the version attributes.
#include <algorithm>
#include <new>

#include "policyfile/CPolicyFileData.h"
#include "settings/Schema.h"
#include "text/Decimal.h"

namespace zupm {

using AdvXMLParser::Attribute;
using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

result::Code CPolicyFileData::CreateTaskSlot(std::unique_ptr<CTaskRef>& slot)
{
    Element taskRoot = FirstChildNamed(Root(), schema::kTaskRoot);
    if (taskRoot.IsNull()) {
        return result::ElementMissing;
    }
    Element group = taskRoot.AddElementInto(schema::kTaskGroup);
    if (group.IsNull()) {
        return result::NotCreated;
    }
    const Element task = group.CreateElement(schema::kTask);
    if (task.IsNull()) {
        return result::NotCreated;
    }
    slot.reset(new (std::nothrow) CTaskRef(group, task));
    return slot ? result::Success : result::AllocationFailed;
}

result::Code CPolicyFileData::CreateProductSlot(std::u16string_view softwareId, std::unique_ptr<CPolicyRef>& slot)
{
    Element policy = FirstPolicy(Root());
    if (policy.IsNull()) {
        return result::ElementMissing;
    }
    const Element product = policy.AddElementInto(schema::kProduct, schema::kSoftwareId, softwareId);
    if (product.IsNull()) {
        return result::NotCreated;
    }
    slot.reset(new (std::nothrow) CPolicyRef(policy, product));
    return slot ? result::Success : result::AllocationFailed;
}

result::Code CPolicyFileData::GetHighestTaskVersion(std::uint64_t& version) const
{
    std::uint64_t highest = 0;
    ForEachTaskGroup(Root(), [&](const Element& group) {
        if (const Attribute attribute = group.GetAttribute(schema::kTaskVersion); !attribute.IsNull()) {
            // Given: see docs/given-oddities.md, "versions without sign".
            highest = std::max(highest, static_cast<std::uint64_t>(ParseInt64(attribute.GetText())));
        }
    });
    version = highest;
    return result::Success;
}

void CPolicyFileData::StampVersions()
{
    std::uint64_t taskVersion = 0;
    static_cast<void>(GetHighestTaskVersion(taskVersion));
    for (const Element child : ElementChildren(Root())) {
        if (child.NameIs(schema::kTaskRoot)) {
            m_properties.taskVersion = taskVersion;
            SetAttribute(child, schema::kVersion, FormatUnsigned(taskVersion));
        } else if (child.NameIs(schema::kPolicyRoot)) {
            SetAttribute(child, schema::kVersion, FormatUnsigned(m_properties.policyVersion));
            ForEachChild(child, schema::kPolicyGroup, [](const Element& group) {
                if (group.GetAttribute(schema::kPath).IsNull()) {
                    SetAttribute(group, schema::kPath, schema::kDefaultPath);
                }
            });
        }
    }
}

}  // namespace zupm
