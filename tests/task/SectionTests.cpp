// The section and setting members of tasks.
#include "tests/support/sections/SectionTest.h"

namespace zupm::test {

INSTANTIATE_TEST_SUITE_P(Task, SectionTest, testing::ValuesIn(AllForms(ObjectKind::Task)), SectionCaseName);

}  // namespace zupm::test
