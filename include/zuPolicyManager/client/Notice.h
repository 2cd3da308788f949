/// What is odd in a policy file.
#pragma once

#include <zuPolicyManager/client/Text.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zupm {

/// One oddity of a loaded document. Texts are UTF-8.
struct Notice {
    std::int32_t kind = 0;
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
        notices.push_back({number(&IPolicyNotices::get_Kind, index), number(&IPolicyNotices::get_Line, index),
                           number(&IPolicyNotices::get_Column, index), text(&IPolicyNotices::get_SoftwareID, index),
                           text(&IPolicyNotices::get_TaskID, index), text(&IPolicyNotices::get_Text, index)});
    }
    return notices;
}

}  // namespace client
}  // namespace zupm
