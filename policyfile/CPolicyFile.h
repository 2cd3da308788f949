/// The object of coclass PolicyFile.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "com/DualObject.h"
#include "com/ResourceModuleUse.h"
#include "interfaces/InterfaceTables.h"
#include "platform/CriticalSection.h"
#include "policyfile/CPolicyFileData.h"
#include "policyfile/EditedFile.h"
#include "policyfile/PolicyFileProperties.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

class CTaskInfo;

/// The policy file as an object: a locked shell around CPolicyFileData, with the edits that take product and task
/// objects in and the methods that hand them out.
///
/// Lifetime  Counted; the objects that it hands out keep no reference to it.
/// Threads   The object's lock serialises all but the three properties (replaced whole) and the creation of blank
///           objects (which touches no member). The lock is held across calls into incoming objects. An incoming object
///           that waits for another thread of the same file waits for ever. One that calls back on the same thread
///           finds the object between two steps of an edit, but never freed memory; if it loads a file, the edit ends.
/// Errors    An edit checks read-only first. It empties its index before it changes the document and rebuilds the index
///           last. After a failure in between the index stays empty; nothing is rolled back.
class CPolicyFile
    : public DualObject<CPolicyFile, IPolicyFile, AlsoImplements<IPolicyFileEdit, &PolicyFileEditInterface>,
                        AlsoImplements<IPolicyFileContents, &PolicyFileContentsInterface>> {
public:
    static constexpr std::u16string_view kCoclass = u"PolicyFile";
    static constexpr std::u16string_view kCreation = u"CPolicyFile::FinalConstruct()";
    static const InterfaceDescription& Description() noexcept { return PolicyFileInterface(); }

    CPolicyFile();

    /// Loads the resource module.
    HRESULT FinalConstruct() noexcept;

    HRESULT AddTask(IUnknown* pTask, LONG bOverwrite) noexcept override;
    HRESULT AddPolicy(IUnknown* pPolicy, LONG bOverwrite) noexcept override;
    HRESULT GetTask(BSTR strSoftwareID, BSTR strTaskID, IUnknown** pTask) noexcept override;
    HRESULT GetPolicy(BSTR strSoftwareID, IUnknown** pPolicy) noexcept override;
    HRESULT RemovePolicy(BSTR strSoftwareID) noexcept override;
    HRESULT RemoveTask(BSTR strSoftwareID, BSTR strTaskID) noexcept override;
    HRESULT InitializeFile(BSTR strPolicyFile, LONG bReadOnly) noexcept override;
    HRESULT WriteFile(BSTR strPolicyFile, LONG bUseInternal) noexcept override;
    HRESULT GetTaskInfo(IUnknown** pTaskInfo) noexcept override;
    HRESULT CreateTask(IPolicyTask** pTask) noexcept override;
    HRESULT CreatePolicy(IPolicyProduct** pPolicy) noexcept override;
    HRESULT WriteFileBuffer(BSTR* pbstrFileBuffer) noexcept override;
    HRESULT get_VersionTask(BSTR* pVal) noexcept override;
    HRESULT get_VersionPolicy(BSTR* pVal) noexcept override;
    HRESULT get_PolicyAssignmentList(BSTR* pVal) noexcept override;

    HRESULT OpenForEdit(BSTR strPolicyFile, LONG lTimeout) noexcept override;
    HRESULT HasFileChanged(LONG* plChanged) noexcept override;
    HRESULT RehearseCommit(LONG bForce) noexcept override;
    HRESULT CommitEdit(LONG bForce) noexcept override;
    HRESULT EndEdit() noexcept override;

    HRESULT get_PolicyIDs(IPolicyNames** pVal) noexcept override;
    HRESULT get_TaskSoftwareIDs(IPolicyNames** pVal) noexcept override;
    HRESULT GetTaskIDs(BSTR strSoftwareID, IPolicyNames** pNames) noexcept override;
    HRESULT get_HasChangedOnDisk(LONG* pVal) noexcept override;
    HRESULT WriteIfUnchanged(LONG lTimeout) noexcept override;
    HRESULT get_Notices(IPolicyNotices** pVal) noexcept override;
    HRESULT GetStoredPolicySetting(BSTR strSoftwareID, BSTR strSection, BSTR strName,
                                   BSTR* pstrValue) noexcept override;
    HRESULT GetStoredTaskSetting(BSTR strSoftwareID, BSTR strTaskID, BSTR strSection, BSTR strName,
                                 BSTR* pstrValue) noexcept override;

protected:
    ~CPolicyFile() = default;

    /// Called under the lock before an enumerator is made; does nothing. Open to tests, which make it fail in ways that
    /// our own objects never do.
    virtual void BeforeTaskInfo() {}

    /// Passes the data to `change` under the object's lock. Open to tests, which make states that no file leads to.
    template <class Change>
    void ChangeData(Change change)
    {
        const CriticalSectionLock lock(m_lock);
        change(m_data);
    }

private:
    [[nodiscard]] result::Code CheckWritable() const noexcept ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code CheckInitialised() const noexcept ZUPM_REQUIRES(m_lock);
    /// An edit is open, and there is a document.
    [[nodiscard]] result::Code CheckEditOpen() const noexcept ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code LoadEdited(const std::u16string& path, std::chrono::milliseconds patience,
                                          std::u16string& detail) ZUPM_REQUIRES(m_lock);

    /// CommitEdit.
    [[nodiscard]] result::Code CommitOpenEdit(bool force) ZUPM_REQUIRES(m_lock);
    /// Replaces a locked file by the document. Without `force` only if it is the one that was loaded. What was written
    /// counts as loaded from then on.
    [[nodiscard]] result::Code Commit(EditedFile& file, bool force) ZUPM_REQUIRES(m_lock);

    /// Success, FileChanged, or the code with which the comparison of the loaded file failed.
    [[nodiscard]] result::Code CompareWithDisk() ZUPM_REQUIRES(m_lock);
    /// WriteIfUnchanged without an open edit.
    [[nodiscard]] result::Code WriteLoadedFile(std::chrono::milliseconds patience) ZUPM_REQUIRES(m_lock);

    /// NotInitialised, with the reason in `detail`, when these are no longer the documents. An incoming object may load
    /// another file here while it answers, and the edit was meant for the document before.
    [[nodiscard]] result::Code CheckStillLoaded(const CPolicyFileData::Documents& documents,
                                                std::u16string& detail) const ZUPM_REQUIRES(m_lock);

    // Given: see docs/given-oddities.md, "empty index after a failure".
    /// The edits, after their checks. `documents` are those from before the incoming object was first called.
    [[nodiscard]] result::Code PutPolicy(IPolicyProduct& incoming, const CPolicyFileData::Documents& documents,
                                         std::u16string& detail) ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code PutTask(IPolicyTask& incoming, const CPolicyFileData::Documents& documents,
                                       std::u16string& detail) ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code DropPolicy(std::u16string_view softwareId) ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code DropTask(std::u16string_view softwareId, std::u16string_view taskId)
        ZUPM_REQUIRES(m_lock);

    /// A copy of the indexed reference, which outlives the index; empty, with Success, when there is none.
    /// AllocationFailed.
    [[nodiscard]] result::Code CopyPolicyRef(std::u16string_view softwareId, std::unique_ptr<CPolicyRef>& copy) const
        ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code CopyTaskRef(std::u16string_view softwareId, std::u16string_view taskId,
                                           std::unique_ptr<CTaskRef>& copy) const ZUPM_REQUIRES(m_lock);

    /// Write the data of an incoming object into the document and take over its new version.
    [[nodiscard]] result::Code WriteProduct(std::u16string_view xml, const AdvXMLParser::Element& policy,
                                            std::u16string& detail) ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code WriteTask(std::u16string_view xml, const AdvXMLParser::Element& group,
                                         std::u16string& detail) ZUPM_REQUIRES(m_lock);

    /// Hands out the names that `names(data)` gives; NotInitialised.
    template <class Names>
    [[nodiscard]] HRESULT ListNames(std::u16string_view operation, IPolicyNames** slot, Names names) noexcept;

    /// Hands out the setting that `read(value)` reads under the lock; NotInitialised.
    template <class Read>
    [[nodiscard]] HRESULT HandOutSetting(std::u16string_view operation, BSTR* slot, Read read) noexcept;

    [[nodiscard]] result::Code HandOutPolicy(std::u16string_view softwareId, IUnknown** slot) ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code HandOutTask(std::u16string_view softwareId, std::u16string_view taskId, IUnknown** slot)
        ZUPM_REQUIRES(m_lock);
    [[nodiscard]] result::Code HandOutTaskInfo(IUnknown** slot) ZUPM_REQUIRES(m_lock);

    ResourceModuleUse m_resources;
    CCriticalSection m_lock;
    PolicyFileProperties m_properties;
    CPolicyFileData m_data ZUPM_GUARDED_BY(m_lock);
    EditedFile m_edited ZUPM_GUARDED_BY(m_lock);
    // Given: see docs/given-oddities.md, "read-only at first".
    std::int32_t m_readOnly ZUPM_GUARDED_BY(m_lock) = 1;
};

}  // namespace zupm
