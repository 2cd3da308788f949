/// The object of coclass PolicyTask.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "com/DualObject.h"
#include "com/ResourceModuleUse.h"
#include "interfaces/InterfaceTables.h"
#include "platform/CriticalSection.h"
#include "task/CTaskData.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// One task as an object: a locked shell around CTaskData, and a current section.
///
/// Lifetime  Counted; holds no reference into a policy file.
/// Threads   The object's lock serialises every member.
/// Errors    The data's codes as they are; NotInitialised after a binding failed. BadArgument for a null slot.
class CPolicyTask
    : public DualObject<CPolicyTask, IPolicyTask, AlsoImplements<IPolicySections, &PolicySectionsInterface>> {
public:
    static constexpr std::u16string_view kCoclass = u"PolicyTask";
    static constexpr std::u16string_view kCreation = u"CPolicyTask::FinalConstruct()";
    static const InterfaceDescription& Description() noexcept { return PolicyTaskInterface(); }

    CPolicyTask();

    /// Loads the resource module and, unless a task is loaded already, loads an empty one.
    HRESULT FinalConstruct() noexcept;

    HRESULT get_CreatorID(BSTR* pVal) noexcept override;
    HRESULT put_CreatorID(BSTR newVal) noexcept override;
    HRESULT get_SoftwareID(BSTR* pVal) noexcept override;
    HRESULT put_SoftwareID(BSTR newVal) noexcept override;
    HRESULT get_TaskID(BSTR* pVal) noexcept override;
    HRESULT put_TaskID(BSTR newVal) noexcept override;
    HRESULT get_DisplayName(BSTR* pVal) noexcept override;
    HRESULT put_DisplayName(BSTR newVal) noexcept override;
    HRESULT get_TaskType(BSTR* pVal) noexcept override;
    HRESULT put_TaskType(BSTR newVal) noexcept override;
    HRESULT get_PlatformsSupported(BSTR* pVal) noexcept override;
    HRESULT put_PlatformsSupported(BSTR newVal) noexcept override;
    HRESULT get_Priority(LONG* pVal) noexcept override;
    HRESULT put_Priority(LONG newVal) noexcept override;
    HRESULT get_TaskData(BSTR* pVal) noexcept override;
    HRESULT put_Section(BSTR newVal) noexcept override;
    HRESULT GetSetting(BSTR strName, BSTR* pstrValue) noexcept override;
    HRESULT PutSetting(BSTR strName, BSTR strValue) noexcept override;
    HRESULT GetSectionSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) noexcept override;
    HRESULT PutSectionSetting(BSTR strSection, BSTR strName, BSTR strValue) noexcept override;
    HRESULT RemoveSetting(BSTR strSection, BSTR strName) noexcept override;
    HRESULT RemoveSection(BSTR strName) noexcept override;
    HRESULT WriteTaskDataToIniFile(BSTR bstrFileName) noexcept override;
    HRESULT get_Version(BSTR* pstrValue) noexcept override;

    HRESULT get_SectionNames(IPolicyNames** pVal) noexcept override;
    HRESULT GetSettingNames(BSTR strSection, IPolicyNames** pNames) noexcept override;
    HRESULT GetStoredSetting(BSTR strSection, BSTR strName, BSTR* pstrValue) noexcept override;
    HRESULT get_TakenVersion(BSTR* pVal) noexcept override;

    /// For the policy file: CTaskData's Initialize, its two forms, and its CopyData, under the object's lock.
    [[nodiscard]] result::Code BindFromElements(const AdvXMLParser::Element& group, const AdvXMLParser::Element& task);
    [[nodiscard]] result::Code BindFromText(std::u16string_view xml, std::u16string& detail);
    [[nodiscard]] result::Code CopyIntoFile(const AdvXMLParser::Element& group, std::uint64_t& version);

protected:
    ~CPolicyTask() = default;

private:
    using TextField = std::u16string TaskFields::*;

    [[nodiscard]] HRESULT GetField(std::u16string_view operation, TextField field, BSTR* slot) noexcept;
    [[nodiscard]] HRESULT PutField(std::u16string_view operation, TextField field, BSTR value) noexcept;
    [[nodiscard]] result::Code LoadEmptyTask();

    ResourceModuleUse m_resources;
    CCriticalSection m_lock;
    std::u16string m_section ZUPM_GUARDED_BY(m_lock);
    CTaskData m_data ZUPM_GUARDED_BY(m_lock);
    bool m_isLoaded ZUPM_GUARDED_BY(m_lock) = false;
};

}  // namespace zupm
