#include "tests/limits/FileNames.h"

namespace zupm::test {

std::vector<NameRow> NamesOfTheSystem()
{
    return {
        {"one letter too many", std::u16string(256, u'x'), true, {result::NameTooLong}},
        {"a user's folder", u"~/policy.xml", false, {result::PathNotFound}},
        {"an open file that is not", u"/proc/self/fd/99999", false, {result::FileNotFound}},
        {"a process that is not", u"/proc/0/environ", false, {result::PathNotFound}},
    };
}

}  // namespace zupm::test
