/// Texts that the component is likely to do something with.
#pragma once

#include <string_view>

namespace zupm::fuzz {

/// Identifiers, names, values and documents that fit one another and the sample file.
inline constexpr std::u16string_view kTexts[] = {
    u"P1",
    u"P2",
    u"T1",
    u"T2",
    u"S",
    u"N",
    u"",
    u"invalid",
    u"Task",
    u"TaskID",
    u"a<b>&\"'\r\n\t",
    u"]]>",
    u" \u20AC\U0001F600 ",
    u"\u00E9\u0085\uFFFD",
    u"\xFFFE",
    u"<PolicyData><Policy><Product SoftwareID='P2'><Section name='S'><Setting name='N'>2</Setting></Section></Product>"
    u"</Policy></PolicyData>",
    u"<PolicyData><Policy/></PolicyData>",
    u"<TaskData><TaskGroup SoftwareID='P2' TaskID='T2' TaskPriority='3'><Task TaskVersion='5'><Section name='S'/>"
    u"</Task></TaskGroup></TaskData>",
    u"<TaskData/>",
    u"<x",
};

/// A policy file with something in it.
inline constexpr std::string_view kSampleFile =
    "<?xml version=\"1.0\"?>\n<PolicyFile>\n <PolicyRoot version=\"12\" AssignmentList=\"all\">\n  <PolicyGroup "
    "Path=\"0_4\">\n   <Policy PathID=\"0_4\" PolicyVersion=\"12\">\n    <Product SoftwareID=\"P1\">\n     <Section "
    "name=\"S\"><Setting name=\"N\">V</Setting></Section>\n    </Product>\n   </Policy>\n  </PolicyGroup>\n "
    "</PolicyRoot>\n <TaskRoot version=\"7\">\n  <TaskGroup SoftwareID=\"P1\" TaskID=\"T1\" TaskVersion=\"7\">\n   "
    "<Task><Section name=\"S\"><Setting name=\"N\">V</Setting></Section></Task>\n  </TaskGroup>\n "
    "</TaskRoot>\n</PolicyFile>\n";

}  // namespace zupm::fuzz
