// Binding that fails: the policy file never asks for it, so the object is bound here directly.
#include "com/ObjectForms.h"
#include "policy/CPolicyProduct.h"
#include "tests/policy/PolicyTest.h"
#include "tests/support/Names.h"
#include "xml/Document.h"
#include "xml/Node.h"
#include "zuPolicyManager/Owners.h"

namespace zupm::test {

namespace {

class ProductBinding : public PolicyTest {
protected:
    ProductBinding()
    {
        if (CreatePlain(m_object) != 0) {
            throw std::runtime_error("no product");
        }
        m_product = ProductClient(ComPtr<IPolicyProduct>(m_object.Get()));
        AdvXMLParser::Element element = m_policy.GetRoot().AddElementInto(u"Product");
        element.CreateAttribute(u"SoftwareID").AddText(u"A");
    }

    zupm::ComPtr<CPolicyProduct> m_object;
    ProductClient m_product;
    AdvXMLParser::Document m_policy{u"Policy"};
};

}  // namespace

TEST_F(ProductBinding, ToAnUnknownIdFailsAndKeepsTheIdButNoData)
{
    ASSERT_EQ(m_product.Put(u"S", u"x", u"1"), 0);
    EXPECT_EQ(m_object->BindToFileElement(m_policy.GetRoot(), u"a"), result::PolicyNotFound);
    EXPECT_EQ(m_product.SoftwareID(), Ok(u"a"));
    EXPECT_EQ(m_product.Data(), Ok(u"<PolicyData><Policy></Policy></PolicyData>"));
    OutText slot;
    const Bstr name(u"S");
    EXPECT_EQ(m_object->GetSectionSetting(name.Get(), name.Get(), slot.Slot()), result::NotInitialised);
    EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::NotInitialised));
    EXPECT_EQ(m_object->GetSetting(name.Get(), slot.Slot()), result::NotInitialised);
    EXPECT_TRUE(slot.Untouched());
    EXPECT_EQ(m_product.Put(u"S", u"x", u"1"), result::NotInitialised);
    EXPECT_EQ(m_product.PutCurrent(u"x", u"1"), result::NotInitialised);
    EXPECT_EQ(m_product.RemoveSetting(u"S", u"x"), result::NotInitialised);
    EXPECT_EQ(m_product.RemoveSection(u"S"), result::NotInitialised);
    EXPECT_EQ(ListOf([&](IPolicyNames** names) { return m_object->get_SectionNames(names); }),
              NoneFor(result::NotInitialised));
    EXPECT_EQ(ListOf([&](IPolicyNames** names) { return m_object->GetSettingNames(name.Get(), names); }),
              NoneFor(result::NotInitialised));
    EXPECT_EQ(m_object->GetStoredSetting(name.Get(), name.Get(), slot.Slot()), result::NotInitialised);
    EXPECT_TRUE(slot.Untouched());
    EXPECT_EQ(m_object->get_TakenVersion(slot.Slot()), 0);
    EXPECT_EQ(slot.Text(), u"") << "the policy that was searched has none";
}

TEST_F(ProductBinding, ThatFailed_MakesPutSoftwareIdSucceedWithoutEffect)
{
    EXPECT_EQ(m_object->BindToFileElement(m_policy.GetRoot(), u"a"), result::PolicyNotFound);
    EXPECT_EQ(m_product.PutSoftwareID(u"B"), 0);
    EXPECT_EQ(m_product.SoftwareID(), Ok(u"a"));
}

TEST_F(ProductBinding, AfterAFailedOne_WorksAgain)
{
    EXPECT_EQ(m_object->BindToFileElement(m_policy.GetRoot(), u"a"), result::PolicyNotFound);
    EXPECT_EQ(m_object->BindToFileElement(m_policy.GetRoot(), u"A"), 0);
    EXPECT_EQ(m_product.SoftwareID(), Ok(u"A"));
    EXPECT_EQ(m_product.Data(), Ok(u"<PolicyData><Policy><Product SoftwareID=\"A\"/></Policy></PolicyData>"));
    EXPECT_EQ(m_product.Put(u"S", u"x", u"1"), 0);
}

TEST_F(ProductBinding, FromTextThatHoldsNoProductLeavesTheObjectAsItWas)
{
    std::u16string detail;
    ASSERT_EQ(m_product.PutSoftwareID(u"P"), 0);
    ASSERT_EQ(m_product.Put(u"S", u"x", u"1"), 0);
    for (const char16_t* text : {u"<PolicyData/>", u"<PolicyData>"}) {
        EXPECT_LT(m_object->BindFromXmlText(text, detail), 0);
        EXPECT_EQ(m_product.SoftwareID(), Ok(u"P"));
        EXPECT_EQ(m_product.Get(u"S", u"x"), Ok(u"1"));
    }
}

TEST_F(ProductBinding, IntoAnElementThatIsNoPolicyIsRefused)
{
    const AdvXMLParser::Document target(u"PolicyGroup");
    std::uint64_t version = 7;
    EXPECT_EQ(m_object->WriteIntoFileElement(target.GetRoot(), version), result::ElementMissing);
    EXPECT_EQ(version, 7U);
    EXPECT_TRUE(target.GetRoot().Begin() == target.GetRoot().End());
}

TEST_F(ProductBinding, IntoOnePolicyTwiceAppendsTwoProducts)
{
    const AdvXMLParser::Document target(u"Policy");
    std::uint64_t version = 0;
    ASSERT_EQ(m_object->WriteIntoFileElement(target.GetRoot(), version), 0);
    EXPECT_EQ(version, 20260102030405U);
    m_clock.Advance(std::chrono::seconds(1));
    ASSERT_EQ(m_object->WriteIntoFileElement(target.GetRoot(), version), 0);
    EXPECT_EQ(version, 20260102030406U);
    EXPECT_EQ(target.GetRoot().GetAttribute(u"PathID").GetText(), u"0_4");
    EXPECT_EQ(target.GetRoot().GetAttribute(u"PolicyVersion").GetText(), u"20260102030406");
    int products = 0;
    for (const AdvXMLParser::Element child : AdvXMLParser::ElementChildren(target.GetRoot())) {
        EXPECT_TRUE(child.NameIs(u"Product"));
        ++products;
    }
    EXPECT_EQ(products, 2);
}

TEST_F(ProductBinding, ThatFailed_CannotBeWrittenIntoAFile)
{
    const AdvXMLParser::Document target(u"Policy");
    std::uint64_t version = 7;
    EXPECT_EQ(m_object->BindToFileElement(m_policy.GetRoot(), u"a"), result::PolicyNotFound);
    EXPECT_EQ(m_object->WriteIntoFileElement(target.GetRoot(), version), result::NotInitialised);
    EXPECT_EQ(version, 7U);
}

}  // namespace zupm::test
