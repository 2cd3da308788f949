/// The object of coclass PolicyProduct.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "com/AtomicText.h"
#include "com/DualObject.h"
#include "com/ResourceModuleUse.h"
#include "interfaces/InterfaceTables.h"
#include "platform/CriticalSection.h"
#include "policy/CPolicyData.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// One product's policy as an object: a locked shell around CPolicyData, and a current section.
///
/// Lifetime  Counted; holds no reference into a policy file.
/// Threads   The object's lock serialises every member except `Section` put (the current section is replaced whole) and
///           PutSectionSetting (CPolicyData's own lock serves).
/// Errors    The data's codes as they are; NotInitialised after a binding failed. BadArgument for a null slot.
class CPolicyProduct
    : public DualObject<CPolicyProduct, IPolicyProduct, AlsoImplements<IPolicySections, &PolicySectionsInterface>> {
public:
    static constexpr std::u16string_view kCoclass = u"PolicyProduct";
    static constexpr std::u16string_view kCreation = u"CPolicyProduct::FinalConstruct()";
    static const InterfaceDescription& Description() noexcept { return PolicyProductInterface(); }

    CPolicyProduct();

    /// Loads the resource module and, unless the object is bound already, binds it to an empty product.
    HRESULT FinalConstruct() noexcept;

    HRESULT get_SoftwareID(BSTR* pVal) noexcept override;
    HRESULT put_SoftwareID(BSTR newVal) noexcept override;
    HRESULT get_PolicyData(BSTR* pVal) noexcept override;
    HRESULT put_Section(BSTR newVal) noexcept override;
    HRESULT GetSetting(BSTR strName, BSTR* pstrValue) noexcept override;
    HRESULT PutSetting(BSTR strName, BSTR strValue) noexcept override;
    HRESULT GetSectionSetting(BSTR strSectionName, BSTR strName, BSTR* pstrValue) noexcept override;
    HRESULT PutSectionSetting(BSTR strSectionName, BSTR strName, BSTR strValue) noexcept override;
    HRESULT RemoveSetting(BSTR strSectionName, BSTR strName) noexcept override;
    HRESULT RemoveSection(BSTR strSectionName) noexcept override;

    HRESULT get_SectionNames(IPolicyNames** pVal) noexcept override;
    HRESULT GetSettingNames(BSTR strSection, IPolicyNames** pNames) noexcept override;
    HRESULT GetStoredSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) noexcept override;
    HRESULT get_TakenVersion(BSTR* pVal) noexcept override;

    /// For the policy file: CPolicyData's Initialize, its two forms, and its WriteBack, under the object's lock.
    [[nodiscard]] result::Code BindToFileElement(const AdvXMLParser::Element& policy, std::u16string_view softwareId,
                                                 const AdvXMLParser::Element& known = {});
    [[nodiscard]] result::Code BindFromXmlText(std::u16string_view xml, std::u16string& detail);
    [[nodiscard]] result::Code WriteIntoFileElement(const AdvXMLParser::Element& target, std::uint64_t& version);

protected:
    ~CPolicyProduct() = default;

private:
    [[nodiscard]] result::Code BindToEmptyProduct();

    ResourceModuleUse m_resources;
    AtomicText m_section;
    CPolicyData m_data;
    // Given: see docs/given-oddities.md, "puts without the lock".
    CCriticalSection m_lock;
    bool m_isBound ZUPM_GUARDED_BY(m_lock) = false;
};

}  // namespace zupm
