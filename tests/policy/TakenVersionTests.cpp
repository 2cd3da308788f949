// The version that a product had when it was taken out of its file.
#include "tests/policy/PolicyTest.h"
#include "tests/support/Names.h"
#include "tests/support/Outs.h"

namespace zupm::test {

namespace {

class TakenProduct : public PolicyTest {
protected:
    [[nodiscard]] static std::u16string VersionOf(const ProductClient& product)
    {
        OutText version;
        EXPECT_EQ(SectionsOf(product)->get_TakenVersion(version.Slot()), 0);
        return version.Text();
    }
    [[nodiscard]] static ComPtr<IPolicySections> SectionsOf(const ProductClient& product)
    {
        return ComPtr<IPolicyProduct>(product.Object()).Query<IPolicySections>();
    }
};

}  // namespace

TEST_F(TakenProduct, HasTheVersionOfItsPolicyAsItIsWritten)
{
    LoadPolicies(
        "<Policy PolicyVersion='0012'><Product SoftwareID='A'/><Product SoftwareID='B'/></Policy>"
        "<Policy PolicyVersion=' x&amp; '><Product SoftwareID='C'/></Policy>"
        "<Policy PathID='1'><Product SoftwareID='D'/></Policy>\n");
    EXPECT_EQ(VersionOf(m_file.Policy(u"A")), u"0012");
    EXPECT_EQ(VersionOf(m_file.Policy(u"B")), u"0012");
    EXPECT_EQ(VersionOf(m_file.Policy(u"C")), u" x& ");
    EXPECT_EQ(VersionOf(m_file.Policy(u"D")), u"");
}

TEST_F(TakenProduct, KeepsTheOldVersionWhenItIsHandedBack)
{
    LoadPolicies("<Policy PolicyVersion='7'>\n<Product SoftwareID='A'/>\n</Policy>\n");
    ProductClient product = m_file.Policy(u"A");
    ASSERT_EQ(m_file.Add(product), 0);
    EXPECT_EQ(VersionOf(product), u"7");
    EXPECT_EQ(VersionOf(m_file.Policy(u"A")), u"20260102030405");
    ASSERT_EQ(product.PutSoftwareID(u"N"), 0);
    EXPECT_EQ(VersionOf(product), u"7");
}

TEST_F(TakenProduct, NullSlotsAreRefusedFirstOfAll)
{
    const auto sections = SectionsOf(m_file.NewPolicy(u"A"));
    const Bstr missing(u"missing");
    EXPECT_EQ(sections->get_SectionNames(nullptr), result::BadArgument);
    EXPECT_EQ(sections->GetSettingNames(missing.Get(), nullptr), result::BadArgument);
    EXPECT_EQ(sections->GetStoredSetting(missing.Get(), missing.Get(), nullptr), result::BadArgument);
    EXPECT_EQ(sections->get_TakenVersion(nullptr), result::BadArgument);
    const ErrorInformation information = TakeErrorInformation();
    EXPECT_EQ(information.description, result::SentenceFor(result::BadArgument));
    EXPECT_TRUE(information.interfaceId == IID_IPolicySections);
    EXPECT_EQ(information.source, u"ZuPolicyManager.PolicyProduct");
}

}  // namespace zupm::test
