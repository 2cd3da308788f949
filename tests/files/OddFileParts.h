/// The building blocks of the odd files: a small policy file with room for something odd.
#pragma once

#include <string>
#include <string_view>

#include "tests/support/TextEdit.h"

namespace zupm::test {

inline constexpr std::string_view kPolicies =
    "<PolicyRoot version=\"12\" AssignmentList=\"all\"><PolicyGroup Path=\"0_4\"><Policy PathID=\"0_4\" "
    "PolicyVersion=\"12\"><Product SoftwareID=\"P1\"><Section name=\"S\"><Setting name=\"N\">V</Setting></Section>"
    "</Product></Policy></PolicyGroup></PolicyRoot>";

inline constexpr std::string_view kTasks =
    "<TaskRoot version=\"@\"><TaskGroup SoftwareID=\"P1\" TaskID=\"T1\" TaskVersion=\"7\"><Task/></TaskGroup>"
    "</TaskRoot>";

/// `before` precedes the root element, `between` is between the policies and the tasks.
inline std::string Document(std::string_view before, std::string_view between, std::string_view after = "\n")
{
    std::string text(before);
    text.append("<PolicyFile>").append(kPolicies).append(between).append(kTasks);
    return text.append("</PolicyFile>").append(after);
}

/// The setting S/N of P1 with that raw content.
inline std::string WithValue(std::string_view raw)
{
    return ReplaceOnce(Document("", ""), ">V<", ">" + std::string(raw) + "<");
}

inline std::string ManyAttributes(int count)
{
    std::string element = "<Note";
    for (int i = 0; i < count; ++i) {
        element += " a" + std::to_string(i) + "=\"" + std::to_string(i) + "\"";
    }
    return element + "/>";
}

inline std::string Nested(std::size_t levels)
{
    std::string text;
    text.reserve(levels * 7);
    for (std::size_t i = 0; i < levels; ++i) {
        text += "<d>";
    }
    for (std::size_t i = 0; i < levels; ++i) {
        text += "</d>";
    }
    return text;
}

}  // namespace zupm::test
