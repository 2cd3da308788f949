// The section and setting members of products.
#include "tests/support/sections/SectionTest.h"

namespace zupm::test {

INSTANTIATE_TEST_SUITE_P(Product, SectionTest, testing::ValuesIn(AllForms(ObjectKind::Product)), SectionCaseName);

}  // namespace zupm::test
