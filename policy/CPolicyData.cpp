#include "policy/CPolicyData.h"

#include <utility>

#include "com/Log.h"
#include "common/TimeStamp.h"
#include "settings/CatchAll.h"
#include "settings/Elements.h"
#include "settings/ParseFailure.h"
#include "text/Decimal.h"
#include "xml/Characters.h"
#include "xml/Exceptions.h"
#include "xml/Parser.h"

namespace zupm {

using AdvXMLParser::Attribute;
using AdvXMLParser::Document;
using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

namespace {

constexpr std::u16string_view kSoftwareIdAttribute = u"SoftwareID";

/// Where the product to be copied stands: its "Policy" element and its ID.
struct ProductPlace {
    Element policy;
    std::u16string softwareId;
};

/// The first "Product" that has an ID; a null policy when there is none.
ProductPlace FindProduct(const Element& root)
{
    for (const Element policy : ElementChildren(root)) {
        if (!policy.NameIs(u"Policy")) {
            continue;
        }
        for (const Element product : ElementChildren(policy)) {
            const Attribute id = product.GetAttribute(kSoftwareIdAttribute);
            if (product.NameIs(u"Product") && !id.IsNull()) {
                return {policy, id.GetText()};
            }
        }
    }
    return {};
}

}  // namespace

CPolicyData::CPolicyData(const void* ownerLink)
    : m_document(u"PolicyData"),
      m_policy(std::make_unique<CElementRef>(m_document.GetRoot().AddElementInto(u"Policy"))),
      m_softwareId(u"invalid"),
      m_ownerLink(ownerLink)
{
}

CPolicyData::~CPolicyData()
{
    m_cursor.reset();  // before the document that it looks at
}

result::Code CPolicyData::Initialize(const Element& policy, std::u16string_view softwareId) noexcept
{
    return CatchAll(u"CPolicyData::Initialize()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        if (m_initialised) {
            DropProduct();
        }
        m_softwareId = softwareId;
        if (const result::Code code = CopyProduct(policy, softwareId); code < 0) {
            return code;
        }
        const result::Code code = OpenCursor();
        m_initialised = code >= 0;
        return code;
    });
}

result::Code CPolicyData::CopyProduct(const Element& policy, std::u16string_view softwareId)
{
    const Element product = FindChildByAttribute(policy, kSoftwareIdAttribute, softwareId);
    if (product.IsNull()) {
        return result::PolicyNotFound;
    }
    Element target = m_policy->GetElement();
    target.DeleteChildren();  // what an initialisation that failed after this point left
    target.Add(product.Clone());
    return result::Success;
}

result::Code CPolicyData::OpenCursor()
{
    std::unique_ptr<CSectionParser> cursor = CSectionParser::Create(Product(), m_ownerLink);
    if (!cursor) {
        return result::AllocationFailed;
    }
    m_cursor = std::move(cursor);
    return m_cursor->Initialize();
}

result::Code CPolicyData::Initialize(std::u16string_view xml, std::u16string& detail)
{
    try {
        const std::unique_ptr<Document> document = AdvXMLParser::Parser().Parse(xml.data(), xml.size());
        if (!document) {
            return result::AllocationFailed;
        }
        const ProductPlace place = FindProduct(document->GetRoot());
        return place.policy.IsNull() ? result::ElementMissing : Initialize(place.policy, place.softwareId);
    } catch (const AdvXMLParser::ParsingException& error) {
        return ReportParseFailure(u"CPolicyData::Initialize()", kTextSource, error, detail);
    }
}

result::Code CPolicyData::Deinitialize()
{
    const CriticalSectionLock lock(m_lock);
    DropProduct();
    return result::Success;
}

void CPolicyData::DropProduct()
{
    m_cursor.reset();
    m_initialised = false;
    m_policy->GetElement().DeleteChildren();
}

result::Code CPolicyData::WriteBack(Element target, std::uint64_t& version) const
{
    const CriticalSectionLock lock(m_lock);
    if (!m_initialised) {
        return result::NotInitialised;
    }
    if (!target.NameIs(u"Policy")) {
        return result::ElementMissing;
    }
    const Element product = Product();
    target.Add(product.Clone());
    SetAttribute(target, u"PathID", kDefaultPath);
    const std::u16string stamp = cmnblib_CurrentTimeToGMTTimeStamp();
    version = static_cast<std::uint64_t>(ParseInt64(stamp));
    SetAttribute(target, u"PolicyVersion", stamp);
    return result::Success;
}

result::Code CPolicyData::SetSoftwareId(std::u16string_view softwareId)
{
    const CriticalSectionLock lock(m_lock);
    if (!m_initialised) {
        return result::NotInitialised;
    }
    if (!AdvXMLParser::IsXmlText(softwareId)) {
        LogException(u"CPolicyData::SetSoftwareID()");
        return result::Unexpected;
    }
    std::u16string stored(softwareId);
    if (const Element product = Product(); product.NameIs(u"Product")) {
        SetAttribute(product, kSoftwareIdAttribute, softwareId);
    }
    m_softwareId = std::move(stored);
    return result::Success;
}

std::u16string CPolicyData::GetSoftwareId() const
{
    const CriticalSectionLock lock(m_lock);
    return m_softwareId;
}

result::Code CPolicyData::GetXmlText(std::u16string& text) const
{
    const CriticalSectionLock lock(m_lock);
    text = m_document.GenerateXML(false).Wide();
    return result::Success;
}

result::Code CPolicyData::GetSectionSetting(std::u16string_view section, std::u16string_view name,
                                            std::u16string& value)
{
    const CriticalSectionLock lock(m_lock);
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->GetSettingValue(section, name, value);
}

result::Code CPolicyData::PutSectionSetting(std::u16string_view section, std::u16string_view name,
                                            std::u16string_view value)
{
    const CriticalSectionLock lock(m_lock);
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->SetSettingValue(section, name, value);
}

result::Code CPolicyData::RemoveSetting(std::u16string_view section, std::u16string_view name)
{
    const CriticalSectionLock lock(m_lock);
    const result::Code code = CheckCursor();
    return code < 0 ? code : m_cursor->RemoveSetting(section, name);
}

result::Code CPolicyData::RemoveSection(std::u16string_view name)
{
    const CriticalSectionLock lock(m_lock);
    if (!m_initialised) {
        return result::NotInitialised;
    }
    const Element container = Product();
    if (container.IsNull()) {
        return result::SectionNotFound;
    }
    const bool isDeleted = DeleteFirstSection(container, name);
    m_cursor.reset();
    const result::Code code = OpenCursor();
    if (code == result::AllocationFailed && !m_cursor) {
        return code;
    }
    return isDeleted ? code : result::SectionNotFound;
}

Element CPolicyData::Product() const noexcept
{
    return FirstChild(m_policy->GetElement());
}

result::Code CPolicyData::CheckCursor() const noexcept
{
    if (!m_initialised) {
        return result::NotInitialised;
    }
    // Memory may have run out between dropping a cursor and opening the next.
    return m_cursor ? result::Success : result::CursorNotInitialised;
}

}  // namespace zupm
