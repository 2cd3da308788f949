// The version that a product had when it was taken out of its file.
#include "tests/policy/PolicyTest.h"

namespace zupm::test {

using TakenProduct = PolicyTest;

TEST_F(TakenProduct, HasTheVersionOfItsPolicyAsItIsWritten)
{
    LoadPolicies(
        "<Policy PolicyVersion='0012'><Product SoftwareID='A'/><Product SoftwareID='B'/></Policy>"
        "<Policy PolicyVersion=' x&amp; '><Product SoftwareID='C'/></Policy>"
        "<Policy PathID='1'><Product SoftwareID='D'/></Policy>\n");
    EXPECT_EQ(TakenVersionOf(m_file.Policy(u"A")), u"0012");
    EXPECT_EQ(TakenVersionOf(m_file.Policy(u"B")), u"0012");
    EXPECT_EQ(TakenVersionOf(m_file.Policy(u"C")), u" x& ");
    EXPECT_EQ(TakenVersionOf(m_file.Policy(u"D")), u"");
}

TEST_F(TakenProduct, KeepsTheOldVersionWhenItIsHandedBack)
{
    LoadPolicies("<Policy PolicyVersion='7'>\n<Product SoftwareID='A'/>\n</Policy>\n");
    ProductClient product = m_file.Policy(u"A");
    ASSERT_EQ(m_file.Add(product), 0);
    EXPECT_EQ(TakenVersionOf(product), u"7");
    EXPECT_EQ(TakenVersionOf(m_file.Policy(u"A")), u"20260102030405");
    ASSERT_EQ(product.PutSoftwareID(u"N"), 0);
    EXPECT_EQ(TakenVersionOf(product), u"7");
}

TEST_F(TakenProduct, NullSlotsAreRefusedFirstOfAll)
{
    ExpectNullSlotsAreRefused(*SectionsOf(m_file.NewPolicy(u"A")).Get(), u"ZuPolicyManager.PolicyProduct");
}

}  // namespace zupm::test
