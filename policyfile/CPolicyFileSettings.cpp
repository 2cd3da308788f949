// Settings of policies and tasks that stay in the file: the rest of IPolicyFileContents.
#include "com/Strings.h"
#include "policyfile/CPolicyFile.h"
#include "settings/Schema.h"
#include "settings/StoredSetting.h"

namespace zupm {

namespace {

/// The element that a copy of the policy is made from.
AdvXMLParser::Element ProductOf(const CPolicyRef& policy, std::u16string_view softwareId)
{
    const AdvXMLParser::Element known = policy.GetFirstWithId();
    // Given: see docs/given-oddities.md, "any element is a product".
    return known.IsNull() ? FindChildByAttribute(policy.GetElement(), schema::kSoftwareId, softwareId) : known;
}

}  // namespace

template <class Read>
HRESULT CPolicyFile::HandOutSetting(std::u16string_view operation, BSTR* slot, Read read) noexcept
{
    return CallOf(IID_IPolicyFileContents, operation, [&]() -> result::Code {
        if (slot == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        std::u16string value;
        result::Code code = CheckInitialised();
        if (code >= 0) {
            code = read(m_data, value);
        }
        return code < 0 ? code : ReplaceString(slot, value);
    });
}

HRESULT CPolicyFile::GetStoredPolicySetting(BSTR strSoftwareID, BSTR strSection, BSTR strName, BSTR* pstrValue) noexcept
{
    return HandOutSetting(
        u"CPolicyFile::GetStoredPolicySetting()", pstrValue, [&](const CPolicyFileData& data, std::u16string& value) {
            const std::u16string softwareId = TextOf(strSoftwareID);
            const CPolicyRef* policy = nullptr;
            const result::Code code = data.FindPolicyRef(softwareId, policy);
            return code < 0
                       ? code
                       : ReadStoredSetting(ProductOf(*policy, softwareId), TextOf(strSection), TextOf(strName), value);
        });
}

HRESULT CPolicyFile::GetStoredTaskSetting(BSTR strSoftwareID, BSTR strTaskID, BSTR strSection, BSTR strName,
                                          BSTR* pstrValue) noexcept
{
    return HandOutSetting(
        u"CPolicyFile::GetStoredTaskSetting()", pstrValue, [&](const CPolicyFileData& data, std::u16string& value) {
            const CTaskRef* task = nullptr;
            const result::Code code = data.FindTaskRef(TextOf(strSoftwareID), TextOf(strTaskID), task);
            return code < 0 ? code : ReadStoredSetting(task->GetElement(), TextOf(strSection), TextOf(strName), value);
        });
}

}  // namespace zupm
