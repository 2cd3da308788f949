/// What is odd in a policy file.
#pragma once

#include <zuPolicyManager/client/Text.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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

/// Every notice of a list. `check` throws for a result that is negative.
template <class Check>
[[nodiscard]] std::vector<Notice> NoticesOf(IPolicyNotices& list, const Check& check)
{
    const auto number = [&](auto get, LONG index) {
        LONG value = 0;
        check((list.*get)(index, &value));
        return static_cast<std::int32_t>(value);
    };
    const auto text = [&](auto get, LONG index) {
        Bstr value;
        check((list.*get)(index, value.Slot()));
        return ToText(value);
    };
    LONG count = 0;
    check(list.get_Count(&count));
    std::vector<Notice> notices;
    notices.reserve(static_cast<std::size_t>(count));
    for (LONG index = 0; index < count; ++index) {
        notices.push_back({NoticeKind{number(&IPolicyNotices::get_Kind, index)},
                           number(&IPolicyNotices::get_Line, index), number(&IPolicyNotices::get_Column, index),
                           text(&IPolicyNotices::get_SoftwareID, index), text(&IPolicyNotices::get_TaskID, index),
                           text(&IPolicyNotices::get_Text, index)});
    }
    return notices;
}

}  // namespace client
}  // namespace zupm
