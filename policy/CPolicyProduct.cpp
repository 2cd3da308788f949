#include "policy/CPolicyProduct.h"

#include "com/SettingSlot.h"
#include "com/Strings.h"
#include "settings/Schema.h"
#include "xml/Document.h"

namespace zupm {

using AdvXMLParser::Document;
using AdvXMLParser::Element;

// Given: see docs/given-oddities.md, "invalid".
CPolicyProduct::CPolicyProduct() : m_section(u"invalid"), m_data(this) {}

HRESULT CPolicyProduct::FinalConstruct() noexcept
{
    return Call(kCreation, [&]() -> result::Code {
        const result::Code code = ResourceModuleUse::EnsureLoaded();
        return code < 0 ? code : BindToEmptyProduct();
    });
}

result::Code CPolicyProduct::BindToEmptyProduct()
{
    // Given: see docs/given-oddities.md, "default ID".
    constexpr std::u16string_view kDefaultId = u"SoftwareID";
    const CriticalSectionLock lock(m_lock);
    if (m_isBound) {
        return result::Success;
    }
    m_isBound = true;
    const Document detached(schema::kPolicy);
    const Element product = detached.GetRoot().CreateElement(schema::kProduct);
    SetAttribute(product, schema::kSoftwareId, kDefaultId);
    return m_data.Initialize(detached.GetRoot(), kDefaultId);
}

HRESULT CPolicyProduct::get_SoftwareID(BSTR* pVal) noexcept
{
    return Call(u"CPolicyProduct::get_SoftwareID()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return StoreString(pVal, m_data.GetSoftwareId());
    });
}

HRESULT CPolicyProduct::put_SoftwareID(BSTR newVal) noexcept
{
    return Call(u"CPolicyProduct::put_SoftwareID()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        // Given: see docs/given-oddities.md, "a put that does nothing".
        // The put succeeds whatever the data answers: an object whose binding failed silently keeps its ID.
        static_cast<void>(m_data.SetSoftwareId(TextOf(newVal)));
        return result::Success;
    });
}

HRESULT CPolicyProduct::get_PolicyData(BSTR* pVal) noexcept
{
    return Call(u"CPolicyProduct::get_PolicyData()", [&]() -> result::Code {
        if (pVal == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        std::u16string text;
        const result::Code code = m_data.GetXmlText(text);
        return code < 0 ? code : StoreString(pVal, text);
    });
}

HRESULT CPolicyProduct::put_Section(BSTR newVal) noexcept
{
    return Call(u"CPolicyProduct::put_Section()", [&]() -> result::Code {
        m_section.Set(TextOf(newVal));
        return result::Success;
    });
}

HRESULT CPolicyProduct::GetSetting(BSTR strName, BSTR* pstrValue) noexcept
{
    return Call(u"CPolicyProduct::GetSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return StoreSetting(m_data, *m_section.Get(), strName, pstrValue);
    });
}

HRESULT CPolicyProduct::PutSetting(BSTR strName, BSTR strValue) noexcept
{
    return Call(u"CPolicyProduct::PutSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return m_data.PutSectionSetting(*m_section.Get(), TextOf(strName), TextOf(strValue));
    });
}

HRESULT CPolicyProduct::GetSectionSetting(BSTR strSectionName, BSTR strName, BSTR* pstrValue) noexcept
{
    return Call(u"CPolicyProduct::GetSectionSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return StoreSetting(m_data, TextOf(strSectionName), strName, pstrValue);
    });
}

HRESULT CPolicyProduct::PutSectionSetting(BSTR strSectionName, BSTR strName, BSTR strValue) noexcept
{
    return Call(u"CPolicyProduct::PutSectionSetting()", [&]() -> result::Code {
        return m_data.PutSectionSetting(TextOf(strSectionName), TextOf(strName), TextOf(strValue));
    });
}

HRESULT CPolicyProduct::RemoveSetting(BSTR strSectionName, BSTR strName) noexcept
{
    return Call(u"CPolicyProduct::RemoveSetting()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return m_data.RemoveSetting(TextOf(strSectionName), TextOf(strName));
    });
}

HRESULT CPolicyProduct::RemoveSection(BSTR strSectionName) noexcept
{
    return Call(u"CPolicyProduct::RemoveSection()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return m_data.RemoveSection(TextOf(strSectionName));
    });
}

result::Code CPolicyProduct::BindToFileElement(const Element& policy, std::u16string_view softwareId,
                                               const Element& known)
{
    const CriticalSectionLock lock(m_lock);
    m_isBound = true;
    return m_data.Initialize(policy, softwareId, known);
}

result::Code CPolicyProduct::BindFromXmlText(std::u16string_view xml, std::u16string& detail)
{
    const CriticalSectionLock lock(m_lock);
    m_isBound = true;
    return m_data.Initialize(xml, detail);
}

result::Code CPolicyProduct::WriteIntoFileElement(const Element& target, std::uint64_t& version)
{
    const CriticalSectionLock lock(m_lock);
    return m_data.WriteBack(target, version);
}

}  // namespace zupm
