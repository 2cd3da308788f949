#include "policyfile/CTaskInfo.h"

#include <new>

#include "com/Log.h"
#include "com/Strings.h"
#include "settings/CatchAll.h"

namespace zupm {

HRESULT CTaskInfo::FinalConstruct() noexcept
{
    return Call(kCreation, [] { return ResourceModuleUse::EnsureLoaded(); });
}

HRESULT CTaskInfo::GetFirst(BSTR* pbstrSoftwareID, BSTR* pbstrTaskID) noexcept
{
    constexpr std::u16string_view kOperation = u"CTaskInfo::GetFirst()";
    return Call(kOperation, [&] {
        return CatchAll(kOperation, [&]() -> result::Code {
            if (pbstrSoftwareID == nullptr || pbstrTaskID == nullptr) {
                return result::BadArgument;
            }
            m_cursor = 0;
            return m_list.empty() ? result::ListEmpty : GetTaskData(0, pbstrSoftwareID, pbstrTaskID);
        });
    });
}

HRESULT CTaskInfo::GetNext(BSTR* pbstrSoftwareID, BSTR* pbstrTaskID) noexcept
{
    constexpr std::u16string_view kOperation = u"CTaskInfo::GetNext()";
    return Call(kOperation, [&] {
        return CatchAll(kOperation, [&]() -> result::Code {
            if (pbstrSoftwareID == nullptr || pbstrTaskID == nullptr) {
                return result::BadArgument;
            }
            return GetTaskData(Advance(), pbstrSoftwareID, pbstrTaskID);
        });
    });
}

std::size_t CTaskInfo::Advance() noexcept
{
    std::size_t position = m_cursor;
    do {
        if (position >= m_list.size()) {
            return m_list.size();
        }
    } while (!m_cursor.compare_exchange_weak(position, position + 1));
    return position + 1;
}

result::Code CTaskInfo::GetTaskData(std::size_t position, BSTR* softwareId, BSTR* taskId) const noexcept
{
    // Given: see docs/given-oddities.md, "GetTaskData::GetTaskData".
    return CatchAll(u"GetTaskData::GetTaskData()", [&]() -> result::Code {
        if (position >= m_list.size()) {
            return result::EndOfList;
        }
        const std::optional<CTaskInfoData>& record = m_list[position];
        if (!record) {
            // Given: see docs/given-oddities.md, "a line that names no operation".
            LogException(u"CTaskInfo::GetTaskData() - Internal error, invalid pointer in storage");
            return result::RecordMissing;
        }
        const result::Code first = StoreString(softwareId, record->SoftwareId(m_text));
        const result::Code second = StoreString(taskId, record->TaskId(m_text));
        return first < 0 ? first : second;
    });
}

result::Code CTaskInfo::Append(std::u16string_view softwareId, std::u16string_view taskId) noexcept
{
    const std::size_t begin = m_text.size();
    try {
        m_text.append(softwareId).append(taskId);
        AppendRecord(CTaskInfoData(begin, softwareId.size(), taskId.size()));
        return result::Success;
    } catch (const std::bad_alloc&) {
        m_text.resize(begin);
        return result::AllocationFailed;
    }
}

}  // namespace zupm
