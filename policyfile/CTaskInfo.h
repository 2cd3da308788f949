/// The object of coclass TaskInfo.
#pragma once

#include <atomic>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "com/DualObject.h"
#include "com/ResourceModuleUse.h"
#include "interfaces/InterfaceTables.h"
#include "policyfile/CTaskInfoData.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

/// A forward-only enumerator over (software ID, task ID) pairs: a snapshot that knows no policy file.
///
/// Lifetime   Counted; owns its records.
/// Threads    No lock: the list is filled before the object is handed out and never changes after that, and the cursor
///            is one atomic index. Threads that share an enumerator share its position.
/// Errors     Result codes. BadArgument for a null slot, before anything moves. GetFirst and GetNext turn any exception
///            into Unexpected.
/// Invariants The cursor is unset, or at most one past the last record.
class CTaskInfo : public DualObject<CTaskInfo, ITaskInfo> {
public:
    static constexpr std::u16string_view kCoclass = u"TaskInfo";
    static constexpr std::u16string_view kCreation = u"CTaskInfo::FinalConstruct()";
    static const InterfaceDescription& Description() noexcept { return TaskInfoInterface(); }

    CTaskInfo() = default;
    CTaskInfo(const CTaskInfo&) = delete;
    CTaskInfo& operator=(const CTaskInfo&) = delete;

    /// Loads the resource module.
    HRESULT FinalConstruct() noexcept;

    HRESULT GetFirst(BSTR* pbstrSoftwareID, BSTR* pbstrTaskID) noexcept override;
    HRESULT GetNext(BSTR* pbstrSoftwareID, BSTR* pbstrTaskID) noexcept override;

    /// For the policy file, before the object is handed out: appends a pair. AllocationFailed.
    [[nodiscard]] result::Code Append(std::u16string_view softwareId, std::u16string_view taskId) noexcept;

protected:
    ~CTaskInfo() = default;

    /// Puts a record at the end of the list. Open to tests, which append an empty one. Throws std::bad_alloc.
    void AppendRecord(std::optional<CTaskInfoData> record) { m_list.push_back(record); }

private:
    static constexpr std::size_t kUnset = std::numeric_limits<std::size_t>::max();

    [[nodiscard]] result::Code GetTaskData(std::size_t position, BSTR* softwareId, BSTR* taskId) const noexcept;
    /// Moves the cursor one record on and gives its new position. At the end, or unset, the cursor stays, and the end
    /// is returned.
    [[nodiscard]] std::size_t Advance() noexcept;

    ResourceModuleUse m_resources;
    std::u16string m_text;  ///< the IDs of all records
    std::vector<std::optional<CTaskInfoData>> m_list;
    std::atomic<std::size_t> m_cursor = kUnset;
};

}  // namespace zupm
