#include "tests/limits/FileNames.h"

namespace zupm::test {

std::vector<NameRow> NamesOfTheSystem()
{
    return {
        {"NUL", u"NUL", false, {result::NotSupported}},
        {"NUL with an extension", u"nul.xml", false, kNoSuchName},
        {"CON", u"CON", false, {result::NotSupported}},
        {"a device in a folder", u"COM1", true, kNoSuchName},
        {"the device namespace", u"\\\\.\\PhysicalDrive0", false, {result::NotSupported}},
        {"a pipe", u"\\\\.\\pipe\\none", false, {result::NotSupported}},
        {"a drive", u"C:", false, kNoSuchName},
        {"a drive that is not there", u"Q:\\policy.xml", false, {result::PathNotFound, result::FileNotFound}},
        {"the long prefix alone", u"\\\\?\\", false, kNoSuchName},
        {"the long prefix before nothing", u"\\\\?\\none\\policy.xml", false, kNoSuchName},
        {"wildcards", u"*.xml", true, kNoSuchName},
    };
}

}  // namespace zupm::test
