/// One record of the task enumerator.
#pragma once

#include <string>
#include <string_view>

namespace zupm {

/// The identity of one task: copies of its two IDs.
class CTaskInfoData {
public:
    CTaskInfoData(std::u16string_view softwareId, std::u16string_view taskId)
        : m_taskId(taskId), m_softwareId(softwareId)
    {
    }
    virtual ~CTaskInfoData() = default;
    CTaskInfoData(const CTaskInfoData&) = delete;
    CTaskInfoData& operator=(const CTaskInfoData&) = delete;

    [[nodiscard]] const std::u16string& SoftwareId() const noexcept { return m_softwareId; }
    [[nodiscard]] const std::u16string& TaskId() const noexcept { return m_taskId; }

private:
    std::u16string m_taskId;
    std::u16string m_softwareId;
};

}  // namespace zupm
