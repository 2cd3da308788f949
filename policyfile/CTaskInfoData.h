/// One record of the task enumerator.
#pragma once

#include <cstddef>
#include <string_view>

namespace zupm {

/// The identity of one task: where its two IDs lie, one after the other, in the text of the enumerator's list.
class CTaskInfoData {
public:
    CTaskInfoData(std::size_t begin, std::size_t softwareIdLength, std::size_t taskIdLength) noexcept
        : m_begin(begin), m_softwareIdLength(softwareIdLength), m_taskIdLength(taskIdLength)
    {
    }

    [[nodiscard]] std::u16string_view SoftwareId(std::u16string_view text) const noexcept
    {
        return text.substr(m_begin, m_softwareIdLength);
    }
    [[nodiscard]] std::u16string_view TaskId(std::u16string_view text) const noexcept
    {
        return text.substr(m_begin + m_softwareIdLength, m_taskIdLength);
    }

private:
    std::size_t m_begin;
    std::size_t m_softwareIdLength;
    std::size_t m_taskIdLength;
};

}  // namespace zupm
