// AddPolicy, RemovePolicy, GetPolicy, CreatePolicy.

#include "PolicyFileTest.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr char kFile[] =
    "<R><PolicyRoot version='99999999999999' AssignmentList='all'><PolicyGroup Path='x'/><PolicyGroup Path='y'>"
    "<Policy PathID='p' PolicyVersion='5'><Product SoftwareID='A'><Section name='S'><Setting name='N'>a</Setting>"
    "</Section></Product></Policy><Policy PathID='q' PolicyVersion='6'><Product SoftwareID='B'/></Policy>"
    "</PolicyGroup></PolicyRoot></R>";

class PolicyEdits : public PolicyFileTest {
protected:
    [[nodiscard]] std::u16string Buffer() const { return m_file.Buffer().value_or(u""); }
};

}  // namespace

TEST_F(PolicyEdits, GetPolicyOfAnUnknownID_LeavesTheSlotAsItWas)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const ProductClient held = m_file.Policy(u"A");
    IUnknown* slot = held.Object();
    EXPECT_EQ(m_file.Object()->GetPolicy(Bstr(u"none").Get(), &slot), result::PolicyNotFound);
    EXPECT_EQ(slot, held.Object());
}

TEST_F(PolicyEdits, ChangeThroughTheObject_ReachesTheDocumentOnlyWithAddPolicy)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const std::u16string before = Buffer();
    ProductClient product = m_file.Policy(u"A");
    ASSERT_EQ(product.Put(u"S", u"N", u"changed"), 0);
    ASSERT_EQ(product.RemoveSection(u"none"), result::SectionNotFound);
    EXPECT_EQ(Buffer(), before);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"a"}));
    ASSERT_EQ(m_file.Add(product), 0);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"changed"}));
    EXPECT_NE(Buffer().find(u"<Setting name='N'>changed</Setting>"), std::u16string::npos);
}

TEST_F(PolicyEdits, ObjectAddedBefore_IsACopyThatLaterChangesDoNotReach)
{
    ASSERT_EQ(LoadText(kFile), 0);
    ProductClient product = m_file.Policy(u"A");
    ASSERT_EQ(m_file.Add(product), 0);
    ASSERT_EQ(product.Put(u"S", u"N", u"later"), 0);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"a"}));
}

TEST_F(PolicyEdits, OverwriteFlag_IsNeverLookedAt)
{
    for (const LONG overwrite : {0, 1, -1}) {
        ASSERT_EQ(LoadText(kFile), 0);
        ProductClient product = m_file.Policy(u"A");
        ASSERT_EQ(product.Put(u"S", u"N", u"new"), 0);
        EXPECT_EQ(m_file.Add(product, overwrite), 0) << overwrite;
        EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"new"})) << overwrite;
        EXPECT_EQ(m_file.RemovePolicy(u"A"), 0);
        EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound) << overwrite << ": it was there once";
    }
}

TEST_F(PolicyEdits, ReplacedPolicy_StaysInItsOwnPolicyElementAndStampsOnlyThat)
{
    const FixedClock clock;
    ASSERT_EQ(LoadText(kFile), 0);
    ASSERT_EQ(m_file.Add(m_file.Policy(u"B")), 0);
    EXPECT_EQ(Utf8(Buffer()), ReplaceOnce(kFile, "PathID='q' PolicyVersion='6'",
                                          "PathID='0_4' PolicyVersion='" + std::string(kStamp) + "'"));
}

TEST_F(PolicyEdits, NewPolicy_BecomesTheLastChildOfTheFirstPolicyElement)
{
    const FixedClock clock;
    ASSERT_EQ(LoadText(kFile), 0);
    ASSERT_EQ(m_file.Add(m_file.NewPolicy(u"C")), 0);
    const std::string stamped =
        ReplaceOnce(kFile, "PathID='p' PolicyVersion='5'", "PathID='0_4' PolicyVersion='" + std::string(kStamp) + "'");
    EXPECT_EQ(Utf8(Buffer()),
              ReplaceOnce(stamped, "</Product></Policy>", "</Product><Product SoftwareID=\"C\"/></Policy>"));
    EXPECT_EQ(m_file.FindPolicy(u"C"), 0);
}

TEST_F(PolicyEdits, PolicyVersion_BecomesTheStampEvenWhenThatIsSmaller)
{
    const FixedClock clock;
    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"99999999999999"}));
    ASSERT_EQ(m_file.Add(m_file.Policy(u"A")), 0);
    EXPECT_EQ(Utf8(m_file.VersionPolicy().text.value()), kStamp);
}

TEST_F(PolicyEdits, RemovedPolicy_LeavesItsPolicyElementWithItsAttributes)
{
    ASSERT_EQ(LoadText(kFile), 0);
    ASSERT_EQ(m_file.RemovePolicy(u"B"), 0);
    EXPECT_EQ(m_file.FindPolicy(u"B"), result::PolicyNotFound);
    EXPECT_EQ(Utf8(Buffer()), ReplaceOnce(kFile, "<Product SoftwareID='B'/>", ""));
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"99999999999999"})) << "a removal stamps nothing";
}

TEST_F(PolicyEdits, RemovingTheFirstOfTwoWithTheSameID_MakesTheSecondReachable)
{
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A' which='1'/></Policy><Policy>"
                       "<Product SoftwareID='A' which='2'/></Policy></PolicyGroup></PolicyRoot></R>"),
              0);
    ASSERT_EQ(m_file.RemovePolicy(u"A"), 0);
    EXPECT_NE(m_file.Policy(u"A").Data().text.value().find(u"which='2'"), std::u16string::npos);
    ASSERT_EQ(m_file.RemovePolicy(u"A"), 0);
    EXPECT_EQ(m_file.RemovePolicy(u"A"), result::PolicyNotFound);
}

TEST_F(PolicyEdits, ReplacingTheFirstOfTwoWithTheSameID_LeavesTheSecondWhereItIs)
{
    const FixedClock clock;
    ASSERT_EQ(
        LoadText("<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A' which='1'/><Product SoftwareID='B'/>"
                 "<Product SoftwareID='A' which='2'/></Policy></PolicyGroup></PolicyRoot></R>"),
        0);
    ASSERT_EQ(m_file.Add(m_file.Policy(u"A")), 0);
    EXPECT_EQ(Utf8(Buffer()), "<R><PolicyRoot><PolicyGroup><Policy PathID=\"0_4\" PolicyVersion=\"" +
                                  std::string(kStamp) +
                                  "\"><Product SoftwareID='B'/><Product SoftwareID='A' which='2'/>"
                                  "<Product SoftwareID='A' which='1'/></Policy></PolicyGroup></PolicyRoot></R>");
    EXPECT_NE(m_file.Policy(u"A").Data().text.value().find(u"which='2'"), std::u16string::npos)
        << "the one that stayed is the first now";
}

TEST_F(PolicyEdits, NewPolicy_GoesIntoTheFirstPolicyElementOfALaterRootWhenNoEarlierRootHasOne)
{
    const FixedClock clock;
    constexpr char kLaterRoot[] =
        "<R><PolicyRoot><PolicyGroup/></PolicyRoot><PolicyRoot><PolicyGroup/><PolicyGroup><Policy/><Policy/>"
        "</PolicyGroup></PolicyRoot></R>";
    ASSERT_EQ(LoadText(kLaterRoot), 0);
    ASSERT_EQ(m_file.Add(m_file.NewPolicy(u"C")), 0);
    EXPECT_EQ(Utf8(Buffer()), ReplaceOnce(kLaterRoot, "<Policy/><Policy/>",
                                          "<Policy PathID=\"0_4\" PolicyVersion=\"" + std::string(kStamp) +
                                              "\"><Product SoftwareID=\"C\"/></Policy><Policy/>"));
    EXPECT_EQ(m_file.FindPolicy(u"C"), 0);
}

TEST_F(PolicyEdits, EveryRebuildOfTheIndex_LogsTheDuplicatesAgain)
{
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'/><Product SoftwareID='A'/>"
                       "<Product SoftwareID='B'/></Policy></PolicyGroup></PolicyRoot></R>"),
              0);
    LogCapture log;
    ASSERT_EQ(m_file.RemovePolicy(u"B"), 0);
    EXPECT_EQ(log.Take(), (std::vector{LogLine{8,
                                               "CPolicyFile::InitializePolicyMap() -- SoftwareID A exists "
                                               "already in the policy map"}}));
}

TEST_F(PolicyEdits, EditsOfPolicies_CheckReadOnlyThenLoadedThenTheObject)
{
    const ProductClient product = m_file.NewPolicy(u"A");
    const TaskClient task = m_file.NewTask(u"A", u"1");
    IPolicyFile* const file = m_file.Object();

    // A new object is read-only, and that is reported before anything else.
    EXPECT_EQ(file->AddPolicy(nullptr, 0), result::ReadOnly);
    EXPECT_EQ(file->AddPolicy(product.Object(), 0), result::ReadOnly);
    EXPECT_EQ(file->RemovePolicy(nullptr), result::ReadOnly);

    ASSERT_EQ(LoadText("<R>"), result::SyntaxError);
    EXPECT_EQ(file->AddPolicy(nullptr, 0), result::NotInitialised);
    EXPECT_EQ(file->AddPolicy(task.Object(), 0), result::NotInitialised);
    EXPECT_EQ(file->RemovePolicy(nullptr), result::NotInitialised);

    ASSERT_EQ(LoadText(kFile, 1), 0);
    EXPECT_EQ(file->AddPolicy(nullptr, 0), result::ReadOnly);
    EXPECT_EQ(m_file.RemovePolicy(u"none"), result::ReadOnly);

    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(file->AddPolicy(nullptr, 0), result::BadArgument);
    EXPECT_EQ(file->AddPolicy(task.Object(), 0), result::BadArgument) << "a task is no policy";
    EXPECT_EQ(file->RemovePolicy(nullptr), result::PolicyNotFound) << "null is the empty ID";
    EXPECT_EQ(m_file.RemovePolicy(u"none"), result::PolicyNotFound);
    EXPECT_EQ(Utf8(Buffer()), kFile) << "nothing changed";
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0) << "the index was not emptied";
}

TEST_F(PolicyEdits, AddWithoutAPolicyElement_FailsWithAMissingElement)
{
    for (const char* text : {"<R/>", "<R><PolicyRoot/></R>", "<R><PolicyRoot><PolicyGroup/></PolicyRoot></R>"}) {
        ASSERT_EQ(LoadText(text), 0) << text;
        EXPECT_EQ(m_file.Add(m_file.NewPolicy(u"C")), result::ElementMissing) << text;
        EXPECT_EQ(Utf8(Buffer()), text);
    }
}

TEST_F(PolicyEdits, IDThatXmlCannotHold_IsNotTakenOver)
{
    ASSERT_EQ(LoadText(kFile), 0);
    ProductClient product = m_file.Policy(u"B");
    EXPECT_EQ(product.PutSoftwareID(u"\x01"), 0);
    EXPECT_EQ(product.SoftwareID(), (TextResult{0, u"B"}));
    EXPECT_EQ(m_file.Add(product), 0);
    EXPECT_EQ(m_file.FindPolicy(u"B"), 0);
}

TEST_F(PolicyEdits, AddAfterRemove_WorksOnTheSameObject)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const ProductClient product = m_file.Policy(u"A");
    ASSERT_EQ(m_file.RemovePolicy(u"A"), 0);
    ASSERT_EQ(m_file.Add(product), 0);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"a"}));
}

TEST_F(PolicyEdits, PolicyOfOneFile_CanBeAddedToAnother)
{
    ASSERT_EQ(LoadText(kFile), 0);
    PolicyFileClient other;
    ASSERT_EQ(other.Load(
                  m_folder.Write(u"other.xml", "<R><PolicyRoot><PolicyGroup><Policy/></PolicyGroup></PolicyRoot></R>")),
              0);
    ASSERT_EQ(other.Add(m_file.Policy(u"A")), 0);
    EXPECT_EQ(other.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"a"}));
}

TEST_F(PolicyEdits, CreatePolicy_GivesAFreshObjectWithoutAnyFile)
{
    ComPtr<IPolicyProduct> object;
    ASSERT_EQ(m_file.Object()->CreatePolicy(object.Put()), 0);
    EXPECT_EQ(ProductClient(object).SoftwareID(), (TextResult{0, u"SoftwareID"}));
    EXPECT_EQ(ProductClient(object).Get(u"S", u"N").code, result::SectionNotFound);
}

}  // namespace zupm::test
