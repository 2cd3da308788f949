// A product that was created on its own, and its properties.
#include "tests/policy/PolicyTest.h"

namespace zupm::test {

namespace {

class NewProduct : public PolicyTest {
protected:
    ComPtr<IPolicyProduct> m_object = Create<IPolicyProduct>();
    ProductClient m_product{m_object};
};

}  // namespace

TEST_F(NewProduct, HasTheDefaultSoftwareIdAndNoSections)
{
    EXPECT_EQ(m_product.SoftwareID(), Ok(u"SoftwareID"));
    EXPECT_EQ(m_product.Data(), Ok(u"<PolicyData><Policy><Product SoftwareID=\"SoftwareID\"/></Policy></PolicyData>"));
    EXPECT_EQ(m_product.RemoveSection(u""), result::SectionNotFound);
}

TEST_F(NewProduct, ShowsItsSectionsAndSettingsInItsXml)
{
    ASSERT_EQ(m_product.Put(u"General", u"Enabled", u"1"), 0);
    ASSERT_EQ(m_product.Put(u"General", u"Mode", u"<full>"), 0);
    EXPECT_EQ(m_product.Data(), Ok(u"<PolicyData><Policy><Product SoftwareID=\"SoftwareID\"><Section name=\"General\">"
                                   u"<Setting name=\"Enabled\">1</Setting><Setting name=\"Mode\">&lt;full&gt;</Setting>"
                                   u"</Section></Product></Policy></PolicyData>"));
}

TEST_F(NewProduct, PutSoftwareId_ChangesTheAttributeOfTheProductElement)
{
    for (const char16_t* id : {u"PRODUCTA1000", u"", u"a<\"&'b\u00E4\U0001F600"}) {
        ASSERT_EQ(m_product.PutSoftwareID(id), 0);
        EXPECT_EQ(m_product.SoftwareID(), Ok(id));
    }
    ASSERT_EQ(m_product.PutSoftwareID(u"PRODUCTA1000"), 0);
    EXPECT_EQ(m_product.Data(),
              Ok(u"<PolicyData><Policy><Product SoftwareID=\"PRODUCTA1000\"/></Policy></PolicyData>"));
}

TEST_F(NewProduct, PutSoftwareId_OfANullStringIsTheEmptyOne)
{
    ASSERT_EQ(m_object->put_SoftwareID(nullptr), 0);
    EXPECT_EQ(m_product.SoftwareID(), Ok(u""));
    EXPECT_EQ(m_product.Data(), Ok(u"<PolicyData><Policy><Product SoftwareID=\"\"/></Policy></PolicyData>"));
}

TEST_F(NewProduct, PutSoftwareId_ThatXMLCannotHold_SucceedsAndChangesNothingButTheLog)
{
    const TextResult before = m_product.Data();
    for (const std::u16string_view id : {u"a\x01", u"\xD800", u"\xFFFF"}) {
        EXPECT_EQ(m_product.PutSoftwareID(id), 0);
        EXPECT_EQ(m_log.Take(), (std::vector{LogLine{1, "Unexpected exception in CPolicyData::SetSoftwareID()"}}));
        EXPECT_EQ(m_product.SoftwareID(), Ok(u"SoftwareID"));
        EXPECT_EQ(m_product.Data(), before);
    }
}

TEST_F(NewProduct, PropertiesWorkByName)
{
    EXPECT_EQ(MemberCall(m_object.Get(), u"SoftwareID").Get().text, u"SoftwareID");
    EXPECT_EQ(MemberCall(m_object.Get(), u"SoftwareID").In(u"P").Put().code, 0);
    const CallOutcome id = MemberCall(m_object.Get(), u"softwareid").Get();
    EXPECT_EQ(id.code, 0);
    EXPECT_EQ(id.type, VT_BSTR);
    EXPECT_EQ(id.text, u"P");
    const CallOutcome data = MemberCall(m_object.Get(), u"PolicyData").Get();
    EXPECT_EQ(data.code, 0);
    EXPECT_EQ(data.text, u"<PolicyData><Policy><Product SoftwareID=\"P\"/></Policy></PolicyData>");
}

TEST_F(NewProduct, SectionCannotBeReadAndPolicyDataCannotBePut)
{
    EXPECT_EQ(MemberCall(m_object.Get(), u"Section").Get().code, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(MemberCall(m_object.Get(), u"PolicyData").In(u"x").Put().code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(NewProduct, ANullSlotIsABadArgument)
{
    const Bstr text(u"a");
    ASSERT_EQ(m_product.Put(u"a", u"a", u"1"), 0);
    ASSERT_EQ(m_product.PutSection(u"a"), 0);
    EXPECT_EQ(m_object->get_SoftwareID(nullptr), result::BadArgument);
    EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::BadArgument));
    EXPECT_EQ(m_object->get_PolicyData(nullptr), result::BadArgument);
    EXPECT_EQ(m_object->GetSetting(text.Get(), nullptr), result::BadArgument);
    EXPECT_EQ(m_object->GetSectionSetting(text.Get(), text.Get(), nullptr), result::BadArgument);
}

TEST_F(NewProduct, GettersReplaceTheTextThatTheSlotHolds)
{
    OutText slot;
    ASSERT_EQ(m_object->get_SoftwareID(slot.Slot()), 0);
    EXPECT_EQ(slot.Text(), u"SoftwareID");
    ASSERT_EQ(m_object->get_PolicyData(slot.Slot()), 0);
    EXPECT_EQ(slot.Text().substr(0, 12), u"<PolicyData>");
}

TEST_F(NewProduct, AFailureLeavesErrorInformationAndASuccessClearsIt)
{
    OutText slot;
    const Bstr name(u"x");
    LeaveStaleErrorInformation();
    EXPECT_EQ(m_object->GetSetting(name.Get(), slot.Slot()), result::SectionNotFound);
    const ErrorInformation failure = TakeErrorInformation();
    EXPECT_EQ(failure.description, result::SentenceFor(result::SectionNotFound));
    EXPECT_EQ(failure.source, u"ZuPolicyManager.PolicyProduct");
    EXPECT_TRUE(failure.interfaceId == IID_IPolicyProduct);
    LeaveStaleErrorInformation();
    EXPECT_EQ(m_object->get_SoftwareID(slot.Slot()), 0);
    EXPECT_FALSE(TakeErrorInformation().present);
}

TEST_F(NewProduct, OffersItsInterfacesAndNoOthers)
{
    EXPECT_TRUE(m_object.Query<IDispatch>());
    EXPECT_TRUE(m_object.Query<ISupportErrorInfo>());
    EXPECT_FALSE(m_object.Query<IPolicyTask>());
    EXPECT_FALSE(m_object.Query<IPolicyFile>());
    EXPECT_EQ(m_object.Query<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(IID_IPolicyProduct), S_OK);
    EXPECT_EQ(m_object.Query<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(IID_IPolicyTask), S_FALSE);
}

}  // namespace zupm::test
