#include "policy/CPolicyData.h"

#include <utility>

#include "com/Log.h"
#include "common/TimeStamp.h"
#include "settings/CatchAll.h"
#include "settings/Schema.h"
#include "settings/TextForm.h"
#include "text/Decimal.h"
#include "xml/Characters.h"

namespace zupm {

using AdvXMLParser::Attribute;
using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

namespace {

/// Where to find the product to copy: its "Policy" element and its ID.
struct ProductPlace {
    Element policy;
    std::u16string softwareId;
};

/// The first "Product" that has an ID; a null policy when there is none.
ProductPlace FindProduct(const Element& root)
{
    for (const Element policy : ElementChildren(root)) {
        if (!policy.NameIs(schema::kPolicy)) {
            continue;
        }
        for (const Element product : ElementChildren(policy)) {
            const Attribute id = product.GetAttribute(schema::kSoftwareId);
            if (product.NameIs(schema::kProduct) && !id.IsNull()) {
                return {policy, id.GetText()};
            }
        }
    }
    return {};
}

}  // namespace

// Given: see docs/given-oddities.md, "invalid".
CPolicyData::CPolicyData(const void* ownerLink)
    : m_copy(u"PolicyData", schema::kPolicy, ownerLink), m_softwareId(u"invalid")
{
}

result::Code CPolicyData::Initialize(const Element& policy, std::u16string_view softwareId,
                                     const Element& known) noexcept
{
    return CatchAll(u"CPolicyData::Initialize()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        if (m_copy.IsInitialised()) {
            m_copy.Drop();
        }
        // Given: see docs/given-oddities.md, "ID of a failed binding".
        m_softwareId = softwareId;
        m_takenVersion = policy.GetAttribute(schema::kPolicyVersion).GetText();
        // Given: see docs/given-oddities.md, "any element is a product".
        const Element product = known.IsNull() ? FindChildByAttribute(policy, schema::kSoftwareId, softwareId) : known;
        return product.IsNull() ? result::PolicyNotFound : m_copy.Take(product);
    });
}

result::Code CPolicyData::Initialize(std::u16string_view xml, std::u16string& detail)
{
    return LoadFromText(u"CPolicyData::Initialize()", xml, detail, [&](const Element& root) -> result::Code {
        const ProductPlace place = FindProduct(root);
        return place.policy.IsNull() ? result::ElementMissing : Initialize(place.policy, place.softwareId);
    });
}

result::Code CPolicyData::Deinitialize()
{
    const CriticalSectionLock lock(m_lock);
    m_copy.Drop();
    return result::Success;
}

result::Code CPolicyData::WriteBack(Element target, std::uint64_t& version) const
{
    const CriticalSectionLock lock(m_lock);
    if (!m_copy.IsInitialised()) {
        return result::NotInitialised;
    }
    if (!target.NameIs(schema::kPolicy)) {
        return result::ElementMissing;
    }
    target.Add(m_copy.Content().Clone());
    SetAttribute(target, schema::kPathId, schema::kDefaultPath);
    const std::u16string stamp = cmnblib_CurrentTimeToGMTTimeStamp();
    version = static_cast<std::uint64_t>(ParseInt64(stamp));
    SetAttribute(target, schema::kPolicyVersion, stamp);
    return result::Success;
}

result::Code CPolicyData::SetSoftwareId(std::u16string_view softwareId)
{
    const CriticalSectionLock lock(m_lock);
    if (!m_copy.IsInitialised()) {
        return result::NotInitialised;
    }
    if (!AdvXMLParser::IsXmlText(softwareId)) {
        LogException(u"CPolicyData::SetSoftwareID()");
        return result::Unexpected;
    }
    std::u16string stored(softwareId);
    if (const Element product = m_copy.Content(); product.NameIs(schema::kProduct)) {
        SetAttribute(product, schema::kSoftwareId, softwareId);
    }
    m_softwareId = std::move(stored);
    return result::Success;
}

std::u16string CPolicyData::GetSoftwareId() const
{
    const CriticalSectionLock lock(m_lock);
    return m_softwareId;
}

std::u16string CPolicyData::GetTakenVersion() const
{
    const CriticalSectionLock lock(m_lock);
    return m_takenVersion;
}

result::Code CPolicyData::GetXmlText(std::u16string& text) const
{
    const CriticalSectionLock lock(m_lock);
    text = m_copy.Text();
    return result::Success;
}

result::Code CPolicyData::GetSectionSetting(std::u16string_view section, std::u16string_view name,
                                            std::u16string& value)
{
    const CriticalSectionLock lock(m_lock);
    return m_copy.GetSectionSetting(section, name, value);
}

result::Code CPolicyData::GetStoredSetting(std::u16string_view section, std::u16string_view name, std::u16string& value)
{
    const CriticalSectionLock lock(m_lock);
    return m_copy.GetStoredSetting(section, name, value);
}

result::Code CPolicyData::GetSectionNames(NameList& names)
{
    const CriticalSectionLock lock(m_lock);
    return m_copy.GetSectionNames(names);
}

result::Code CPolicyData::GetSettingNames(std::u16string_view section, NameList& names)
{
    const CriticalSectionLock lock(m_lock);
    return m_copy.GetSettingNames(section, names);
}

result::Code CPolicyData::PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                            std::u16string_view value)
{
    const CriticalSectionLock lock(m_lock);
    return m_copy.PutSectionSetting(section, name, value);
}

result::Code CPolicyData::RemoveSetting(std::u16string_view section, std::u16string_view name)
{
    const CriticalSectionLock lock(m_lock);
    return m_copy.RemoveSetting(section, name);
}

result::Code CPolicyData::RemoveSection(std::u16string_view name)
{
    const CriticalSectionLock lock(m_lock);
    if (!m_copy.IsInitialised()) {
        return result::NotInitialised;
    }
    const Element product = m_copy.Content();
    if (product.IsNull()) {
        return result::SectionNotFound;
    }
    // Given: see docs/given-oddities.md, "rebuilt on a miss".
    const bool isDeleted = DeleteFirstSection(product, name);
    const result::Code code = m_copy.ReopenCursor();
    if (code == result::AllocationFailed && m_copy.Cursor() == nullptr) {
        return code;
    }
    return isDeleted ? code : result::SectionNotFound;
}

}  // namespace zupm
