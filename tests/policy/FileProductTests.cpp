// Products that a policy file hands out and takes back.
#include "tests/policy/PolicyTest.h"

namespace zupm::test {

namespace {

class FileProduct : public PolicyTest {};

using LogLines = std::vector<LogLine>;

}  // namespace

TEST_F(FileProduct, IsAnExactCopyOfItsElement)
{
    LoadPolicies(
        "<Policy>\n"
        "<Product SoftwareID='A'  other=\"1\">\n<!-- c --><Section name='S'/>\n</Product>\n"
        "</Policy>\n");
    EXPECT_EQ(m_file.Policy(u"A").SoftwareID(), Ok(u"A"));
    EXPECT_EQ(m_file.Policy(u"A").Data(),
              Ok(u"<PolicyData><Policy><Product SoftwareID='A'  other=\"1\">\n<!-- c --><Section name='S'/>\n"
                 u"</Product></Policy></PolicyData>"));
}

TEST_F(FileProduct, LeavesTheFileAloneUntilItIsHandedBack)
{
    LoadPolicies("<Policy>\n<Product SoftwareID='A'/>\n</Policy>\n");
    ProductClient product = m_file.Policy(u"A");
    ASSERT_EQ(product.Put(u"S", u"x", u"1"), 0);
    EXPECT_EQ(Changes(), "");
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"x").code, result::SectionNotFound);
    ASSERT_EQ(m_file.Add(product), 0);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"x"), Ok(u"1"));
}

TEST_F(FileProduct, OutlivesTheFile)
{
    LoadPolicies(
        "<Policy><Product SoftwareID='A'><Section name='S'><Setting name='x'>1</Setting></Section></Product>"
        "</Policy>\n");
    ProductClient product = m_file.Policy(u"A");
    m_file = PolicyFileClient();
    EXPECT_EQ(product.Get(u"S", u"x"), Ok(u"1"));
    EXPECT_EQ(product.Put(u"S", u"x", u"2"), 0);
    EXPECT_EQ(product.Get(u"S", u"x"), Ok(u"2"));
}

TEST_F(FileProduct, IsTheFirstOfTwoWithTheSameIdInOnePolicy)
{
    LoadPolicies(
        "<Policy><Product SoftwareID='B'/><Product SoftwareID='A' n='1'/><Product SoftwareID='A' n='2'/></Policy>\n");
    EXPECT_EQ(m_file.Policy(u"A").Data(),
              Ok(u"<PolicyData><Policy><Product SoftwareID='A' n='1'/></Policy></PolicyData>"));
}

TEST_F(FileProduct, IsPickedByItsIdWhateverTheElementIsCalled)
{
    // The index knows products by the element's name, but within their policy only the identifier counts.
    LoadPolicies(
        "<Policy><Other SoftwareID='a'/><Other SoftwareID='A' n='1'/><Product SoftwareID='A' n='2'/></Policy>\n");
    ProductClient product = m_file.Policy(u"A");
    EXPECT_EQ(product.Data(), Ok(u"<PolicyData><Policy><Other SoftwareID='A' n='1'/></Policy></PolicyData>"));
    ASSERT_EQ(product.PutSoftwareID(u"N"), 0);
    EXPECT_EQ(product.SoftwareID(), Ok(u"N"));
    EXPECT_EQ(product.Data(), Ok(u"<PolicyData><Policy><Other SoftwareID='A' n='1'/></Policy></PolicyData>"));
}

TEST_F(FileProduct, PutSoftwareId_ReplacesTheWholeOldOne)
{
    LoadPolicies("<Policy><Product other='o' SoftwareID='A &amp; B'/></Policy>\n");
    ProductClient product = m_file.Policy(u"A & B");
    ASSERT_EQ(product.PutSoftwareID(u"C"), 0);
    EXPECT_EQ(product.SoftwareID(), Ok(u"C"));
    EXPECT_EQ(product.Data(), Ok(u"<PolicyData><Policy><Product other='o' SoftwareID='C'/></Policy></PolicyData>"));
}

TEST_F(FileProduct, RemoveSection_OfAMissingSectionStillRebuildsTheIndexes)
{
    LoadPolicies("<Policy><Product SoftwareID='A'><Section name='S'/><Section name='S'/></Product></Policy>\n");
    ProductClient product = m_file.Policy(u"A");
    static_cast<void>(m_log.Take());
    EXPECT_EQ(product.RemoveSection(u"None"), result::SectionNotFound);
    EXPECT_EQ(m_log.Take(),
              (LogLines{{8, "CXMLDataObject::Initialize() -- Section S exists already in the section map"}}))
        << "names that occur twice are logged by every rebuild";
}

TEST_F(FileProduct, HandedBack_StampsItsPolicyAndChangesNothingElse)
{
    LoadPolicies(
        "  <Policy PathID=\"7\" PolicyVersion=\"5\">\n"
        "    <Product SoftwareID=\"A\"/>\n"
        "    <Product SoftwareID=\"B\"/>\n"
        "  </Policy>\n"
        "  <Policy>\n"
        "    <Product SoftwareID=\"C\"/>\n"
        "  </Policy>\n");
    ProductClient product = m_file.Policy(u"B");
    ASSERT_EQ(product.Put(u"S", u"x", u"1"), 0);
    ASSERT_EQ(m_file.Add(product), 0);
    EXPECT_EQ(Changes(),
              "-   <Policy PathID=\"7\" PolicyVersion=\"5\">\n"
              "+   <Policy PathID=\"0_4\" PolicyVersion=\"20260102030405\">\n"
              "-     <Product SoftwareID=\"B\"/>\n"
              "+     <Product SoftwareID=\"B\">\n"
              "+       <Section name=\"S\">\n"
              "+         <Setting name=\"x\">1</Setting>\n"
              "+       </Section>\n"
              "+     </Product>\n");
    EXPECT_EQ(m_file.VersionPolicy(), Ok(u"20260102030405"));
}

TEST_F(FileProduct, HandedBack_CreatesTheAttributesThatItsPolicyLacks)
{
    LoadPolicies("<Policy>\n<Product SoftwareID=\"A\"/>\n</Policy>\n");
    ASSERT_EQ(m_file.Add(m_file.Policy(u"A")), 0);
    EXPECT_EQ(Changes(), "- <Policy>\n+ <Policy PathID=\"0_4\" PolicyVersion=\"20260102030405\">\n");
}

TEST_F(FileProduct, TwoHandedToOnePolicy_AreBothInItUnderTheSecondStamp)
{
    LoadPolicies("<Policy>\n</Policy>\n");
    ASSERT_EQ(m_file.Add(m_file.NewPolicy(u"A")), 0);
    m_clock.Advance(std::chrono::seconds(56));
    ASSERT_EQ(m_file.Add(m_file.NewPolicy(u"B")), 0);
    EXPECT_EQ(Changes(),
              "- <Policy>\n"
              "+ <Policy PathID=\"0_4\" PolicyVersion=\"20260102030501\">\n"
              "+ <Product SoftwareID=\"A\"/>\n"
              "+ <Product SoftwareID=\"B\"/>\n");
    EXPECT_EQ(m_file.VersionPolicy(), Ok(u"20260102030501"));
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0);
    EXPECT_EQ(m_file.FindPolicy(u"B"), 0);
}

TEST_F(FileProduct, HandedBackTwice_IsInItsPolicyOnce)
{
    LoadPolicies("<Policy>\n<Product SoftwareID=\"A\"/>\n</Policy>\n");
    const ProductClient product = m_file.Policy(u"A");
    ASSERT_EQ(m_file.Add(product), 0);
    m_clock.Advance(std::chrono::hours(24));
    ASSERT_EQ(m_file.Add(product), 0);
    EXPECT_EQ(Changes(), "- <Policy>\n+ <Policy PathID=\"0_4\" PolicyVersion=\"20260103030405\">\n");
}

TEST_F(FileProduct, GetPolicy_OfAnUnknownIdLeavesTheSlotAlone)
{
    LoadPolicies("<Policy><Product SoftwareID='A'/></Policy>\n");
    OutObject<IUnknown> slot;
    const Bstr id(u"a");
    EXPECT_EQ(m_file.Object()->GetPolicy(id.Get(), slot.Slot()), result::PolicyNotFound);
    EXPECT_TRUE(slot.Untouched());
    EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::PolicyNotFound));
}

}  // namespace zupm::test
