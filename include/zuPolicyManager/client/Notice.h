/// What is odd in a policy file.
#pragma once

#include <zuPolicyManager/client/File.h>
#include <zuPolicyManager/client/Iterator.h>
#include <zuPolicyManager/client/Text.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace zupm {

/// What is odd, in a file that loads all the same. A later component may know more kinds.
enum class NoticeKind : std::int32_t {
    RepeatedPolicy = 1,   ///< A policy whose software ID occurred before: only the first is used.
    RepeatedTask = 2,     ///< A task whose IDs occurred before, likewise.
    RepeatedSection = 3,  ///< A section whose name occurred before: both are read as one.
    RepeatedSetting = 4,  ///< A setting whose name occurred before: only the first is used.
    OtherDocument = 5,    ///< Neither "PolicyRoot" nor "TaskRoot": perhaps no policy file.
    BadVersion = 6,       ///< A version that is no number.
    SameIniSetting = 7,   ///< A task's setting that an INI file takes for an earlier one.
    IniField = 8,         ///< A task's setting that an INI file takes for a field of the task.
};

/// One oddity of a loaded document, with the place of the start tag concerned. Texts are UTF-8.
struct Notice {
    NoticeKind kind{};
    std::int32_t line = 0;
    std::int32_t column = 0;
    std::string softwareId;  ///< Of the policy or task concerned; may be empty.
    std::string taskId;      ///< Of the task concerned; may be empty.
    std::string text;        ///< One sentence for people.
};

namespace client {

/// A list of notices, as rows.
class NoticeRows {
public:
    using value_type = Notice;

    NoticeRows(ComPtr<IPolicyNotices> list, std::shared_ptr<const File> file)
        : m_list(std::move(list)), m_file(std::move(file))
    {
        m_file->Check(m_list->get_Count(&m_count));
    }

    [[nodiscard]] std::size_t Count() const noexcept { return static_cast<std::size_t>(m_count); }
    [[nodiscard]] std::optional<Notice> Make(std::size_t row) const
    {
        const auto index = static_cast<LONG>(row);
        return Notice{NoticeKind{Number(&IPolicyNotices::get_Kind, index)},
                      Number(&IPolicyNotices::get_Line, index),
                      Number(&IPolicyNotices::get_Column, index),
                      Text(&IPolicyNotices::get_SoftwareID, index),
                      Text(&IPolicyNotices::get_TaskID, index),
                      Text(&IPolicyNotices::get_Text, index)};
    }

private:
    [[nodiscard]] std::int32_t Number(HRESULT (IPolicyNotices::*get)(LONG, LONG*), LONG index) const
    {
        LONG value = 0;
        m_file->Check(((*m_list).*get)(index, &value));
        return static_cast<std::int32_t>(value);
    }
    [[nodiscard]] std::string Text(HRESULT (IPolicyNotices::*get)(LONG, BSTR*), LONG index) const
    {
        Bstr value;
        m_file->Check(((*m_list).*get)(index, value.Slot()));
        return ToText(value);
    }

    ComPtr<IPolicyNotices> m_list;
    std::shared_ptr<const File> m_file;
    LONG m_count = 0;
};

}  // namespace client

/// A range of notices, in the order of the file: a snapshot. They are read one by one, because a hostile file may have
/// a million.
using Notices = client::Range<client::NoticeRows>;

}  // namespace zupm
