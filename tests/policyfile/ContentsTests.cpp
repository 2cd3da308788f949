// What a policy file has, listed: IPolicyFileContents.
#include "PolicyFileTest.h"
#include "tests/support/MemberCall.h"
#include "tests/support/Names.h"

namespace zupm::test {

namespace {

using namespace std::literals;

constexpr char kFile[] =
    "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='Zeta'/><Product SoftwareID='alpha'/></Policy>"
    "<Policy><Product SoftwareID='Alpha'/></Policy></PolicyGroup></PolicyRoot>"
    "<TaskRoot><TaskGroup SoftwareID='Zeta' TaskID='9'><Task/></TaskGroup>"
    "<TaskGroup SoftwareID='Alpha' TaskID='1'><Task/></TaskGroup>"
    "<TaskGroup SoftwareID='Zeta' TaskID='10'><Task/></TaskGroup></TaskRoot></R>";

class PolicyFileContents : public PolicyFileTest {
protected:
    [[nodiscard]] Listed PolicyIDs() const
    {
        return ListOf([&](IPolicyNames** slot) { return Contents()->get_PolicyIDs(slot); });
    }
    [[nodiscard]] Listed TaskSoftwareIDs() const
    {
        return ListOf([&](IPolicyNames** slot) { return Contents()->get_TaskSoftwareIDs(slot); });
    }
    [[nodiscard]] Listed TaskIDs(std::u16string_view softwareId) const
    {
        return ListOf([&](IPolicyNames** slot) { return Contents()->GetTaskIDs(Bstr(softwareId).Get(), slot); });
    }
    [[nodiscard]] ComPtr<IPolicyFileContents> Contents() const
    {
        ComPtr<IPolicyFileContents> contents;
        EXPECT_EQ(m_file.Object()->QueryInterface(IID_IPolicyFileContents, contents.PutVoid()), S_OK);
        return contents;
    }
    [[nodiscard]] MemberCall Member(std::u16string_view name) const { return MemberCall(m_file.Object(), name); }
    /// The names of a list that a call by name gave as its value.
    [[nodiscard]] static Listed NamesIn(const CallOutcome& outcome)
    {
        const auto names = outcome.object.Query<IPolicyNames>();
        return {outcome.code, names ? ReadNames(*names) : Names{u"(none)"}};
    }
};

}  // namespace

TEST_F(PolicyFileContents, ListsEverythingInTheOrderOfTheFile)
{
    ASSERT_EQ(LoadText(kFile, 1), 0);
    EXPECT_EQ(PolicyIDs(), AllOf({u"Zeta", u"alpha", u"Alpha"}));
    EXPECT_EQ(TaskSoftwareIDs(), AllOf({u"Zeta", u"Alpha"}));
    EXPECT_EQ(TaskIDs(u"Zeta"), AllOf({u"9", u"10"}));
    EXPECT_EQ(TaskIDs(u"Alpha"), AllOf({u"1"}));
}

TEST_F(PolicyFileContents, KeepsTheOrderOfTheFileAfterAnEnumeratorSortedTheTasks)
{
    ASSERT_EQ(LoadText(kFile), 0);
    ASSERT_EQ(m_file.Tasks().All(), (Names{u"Alpha/1", u"Zeta/10", u"Zeta/9"}));
    EXPECT_EQ(TaskSoftwareIDs(), AllOf({u"Zeta", u"Alpha"}));
    EXPECT_EQ(TaskIDs(u"Zeta"), AllOf({u"9", u"10"}));
}

TEST_F(PolicyFileContents, OfAFileWithoutPoliciesAndTasksAreEmptyLists)
{
    ASSERT_EQ(LoadText("<R/>"), 0);
    EXPECT_EQ(PolicyIDs(), AllOf({}));
    EXPECT_EQ(TaskSoftwareIDs(), AllOf({}));
    EXPECT_EQ(TaskIDs(u"A"), AllOf({}));
}

TEST_F(PolicyFileContents, TaskIDsOfASoftwareIDWithoutTasksAreAnEmptyList)
{
    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(TaskIDs(u"alpha"), AllOf({})) << "it has a policy alone";
    EXPECT_EQ(TaskIDs(u"None"), AllOf({}));
    EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return Contents()->GetTaskIDs(nullptr, slot); }), AllOf({}));
}

TEST_F(PolicyFileContents, ListsAnIDThatOccursTwiceOnceInTheFirstPlace)
{
    ASSERT_EQ(
        LoadText(
            "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'/><Product SoftwareID='B'/></Policy><Policy>"
            "<Product SoftwareID='A'/></Policy></PolicyGroup></PolicyRoot>"
            "<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/><Task/></TaskGroup>"
            "<TaskGroup SoftwareID='A' TaskID='2'><Task/></TaskGroup></TaskRoot>"
            "<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup></TaskRoot></R>"),
        0);
    EXPECT_EQ(PolicyIDs(), AllOf({u"A", u"B"}));
    EXPECT_EQ(TaskSoftwareIDs(), AllOf({u"A"}));
    EXPECT_EQ(TaskIDs(u"A"), AllOf({u"1", u"2"}));
}

TEST_F(PolicyFileContents, ListsEmptyIDs)
{
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID=''/><Product SoftwareID='B'/><Product/>"
                       "</Policy></PolicyGroup></PolicyRoot>"
                       "<TaskRoot><TaskGroup SoftwareID='B' TaskID='1'><Task/></TaskGroup>"
                       "<TaskGroup SoftwareID='' TaskID='2'><Task/></TaskGroup>"
                       "<TaskGroup SoftwareID='' TaskID=''><Task/></TaskGroup></TaskRoot></R>"),
              0);
    EXPECT_EQ(PolicyIDs(), AllOf({u"", u"B"})) << "one without the attribute has no ID";
    EXPECT_EQ(m_file.Tasks().All(), (Names{u"/", u"/2", u"B/1"}));
    EXPECT_EQ(TaskSoftwareIDs(), AllOf({u"B", u""}));
    EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return Contents()->GetTaskIDs(nullptr, slot); }), AllOf({u"2", u""}));
    EXPECT_EQ(TaskIDs(u""), AllOf({u"2", u""}));
}

TEST_F(PolicyFileContents, LeavesOutWhatNoLookupFinds)
{
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy><Other SoftwareID='O'/></Policy></PolicyGroup>"
                       "<Policy><Product SoftwareID='outside'/></Policy></PolicyRoot>"
                       "<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'/><TaskGroup SoftwareID='B'><Task/></TaskGroup>"
                       "<TaskGroup TaskID='1'><Task/></TaskGroup></TaskRoot></R>"),
              0);
    EXPECT_EQ(PolicyIDs(), AllOf({}));
    EXPECT_EQ(TaskSoftwareIDs(), AllOf({})) << "a group without a task, and two that lack an ID";
    EXPECT_EQ(TaskIDs(u"A"), AllOf({}));
}

TEST_F(PolicyFileContents, ListsWhatWasAddedLastAndNothingThatWasRemoved)
{
    ASSERT_EQ(LoadText(kFile), 0);
    ASSERT_EQ(m_file.Add(m_file.NewPolicy(u"New")), 0);
    ASSERT_EQ(m_file.Add(m_file.NewTask(u"New", u"n")), 0);
    ASSERT_EQ(m_file.Add(m_file.NewTask(u"Zeta", u"0")), 0);
    ASSERT_EQ(m_file.RemovePolicy(u"Zeta"), 0);
    ASSERT_EQ(m_file.RemoveTask(u"Zeta", u"9"), 0);
    // A new policy goes into the first "Policy".
    EXPECT_EQ(PolicyIDs(), AllOf({u"alpha", u"New", u"Alpha"}));
    EXPECT_EQ(TaskSoftwareIDs(), AllOf({u"Alpha", u"Zeta", u"New"}));
    EXPECT_EQ(TaskIDs(u"Zeta"), AllOf({u"10", u"0"}));
    ASSERT_EQ(m_file.RemoveTask(u"Alpha", u"1"), 0);
    EXPECT_EQ(TaskSoftwareIDs(), AllOf({u"Zeta", u"New"}));
}

TEST_F(PolicyFileContents, ListThatWasHandedOutStaysAsItIs)
{
    ASSERT_EQ(LoadText(kFile), 0);
    OutObject<IPolicyNames> slot;
    ASSERT_EQ(Contents()->get_PolicyIDs(slot.Slot()), 0);
    const ComPtr<IPolicyNames> names = slot.Take();
    ASSERT_EQ(m_file.RemovePolicy(u"Zeta"), 0);
    ASSERT_EQ(LoadText("<R/>"), 0);
    m_file = PolicyFileClient();
    EXPECT_EQ(ReadNames(*names), (Names{u"Zeta", u"alpha", u"Alpha"}));
}

TEST_F(PolicyFileContents, FailsWhileNothingIsLoaded)
{
    const auto check = [&](const char* when) {
        EXPECT_EQ(PolicyIDs(), NoneFor(result::NotInitialised)) << when;
        EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::NotInitialised));
        EXPECT_EQ(TaskSoftwareIDs(), NoneFor(result::NotInitialised)) << when;
        EXPECT_EQ(TaskIDs(u"A"), NoneFor(result::NotInitialised)) << when;
    };
    check("before the first load");
    ASSERT_EQ(LoadText(kFile), 0);
    ASSERT_EQ(LoadText("<R"), result::SyntaxError);
    check("after a load that failed");
}

TEST_F(PolicyFileContents, NullSlotIsRefusedFirstOfAll)
{
    for (const char* state : {"new", "loaded"}) {
        EXPECT_EQ(Contents()->get_PolicyIDs(nullptr), result::BadArgument) << state;
        EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::BadArgument));
        EXPECT_EQ(Contents()->get_TaskSoftwareIDs(nullptr), result::BadArgument) << state;
        EXPECT_EQ(Contents()->GetTaskIDs(Bstr(u"A").Get(), nullptr), result::BadArgument) << state;
        ASSERT_EQ(LoadText(kFile), 0);
    }
}

TEST_F(PolicyFileContents, FailureNamesTheInterfaceThatWasCalled)
{
    OutObject<IPolicyNames> slot;
    EXPECT_EQ(Contents()->get_PolicyIDs(slot.Slot()), result::NotInitialised);
    const ErrorInformation information = TakeErrorInformation();
    EXPECT_TRUE(information.interfaceId == IID_IPolicyFileContents);
    EXPECT_EQ(information.source, u"ZuPolicyManager.PolicyFile");
    const auto support = m_file.Object();
    ComPtr<ISupportErrorInfo> supported;
    ASSERT_EQ(support->QueryInterface(IID_ISupportErrorInfo, supported.PutVoid()), S_OK);
    EXPECT_EQ(supported->InterfaceSupportsErrorInfo(IID_IPolicyFileContents), S_OK);
}

TEST_F(PolicyFileContents, SuccessClearsWhatAnEarlierCallLeft)
{
    ASSERT_EQ(LoadText(kFile), 0);
    const auto contents = Contents();
    LeaveStaleErrorInformation();
    OutObject<IPolicyNames> slot;
    EXPECT_EQ(contents->get_PolicyIDs(slot.Slot()), 0);
    EXPECT_FALSE(TakeErrorInformation().present);
}

TEST_F(PolicyFileContents, IsCalledByNameOnThePolicyFile)
{
    ASSERT_EQ(LoadText(kFile), 0);
    EXPECT_EQ(NamesIn(Member(u"PolicyIDs").Get()), AllOf({u"Zeta", u"alpha", u"Alpha"}));
    EXPECT_EQ(NamesIn(Member(u"policyids").Get()), AllOf({u"Zeta", u"alpha", u"Alpha"}));
    EXPECT_EQ(NamesIn(Member(u"TaskSoftwareIDs").Get()), AllOf({u"Zeta", u"Alpha"}));
    EXPECT_EQ(NamesIn(Member(u"GetTaskIDs").In(u"Zeta").ForResult()), AllOf({u"9", u"10"}));
    OutObject<IPolicyNames> slot;
    EXPECT_EQ(Member(u"GetTaskIDs").In(u"Zeta").Out(slot).Call().code, 0);
    EXPECT_EQ(ReadNames(*slot.Take()), (Names{u"9", u"10"}));
}

TEST_F(PolicyFileContents, FailureByNameRaisesItsCodeWithItsSentence)
{
    const CallOutcome outcome = Member(u"PolicyIDs").Get();
    EXPECT_EQ(outcome.invoked, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, result::NotInitialised);
    EXPECT_EQ(outcome.description, result::SentenceFor(result::NotInitialised));
    EXPECT_EQ(outcome.source, u"ZuPolicyManager.PolicyFile");
}

TEST_F(PolicyFileContents, OfTenThousandPoliciesAndTasksAreComplete)
{
    constexpr int kCount = 10000;
    std::string policies;
    std::string tasks;
    Names expected;
    for (int i = kCount; i-- > 0;) {
        const std::string id = std::to_string(i);
        policies += "<Product SoftwareID='" + id + "'/>";
        tasks += "<TaskGroup SoftwareID='" + id + "' TaskID='t'><Task/></TaskGroup>";
        expected.push_back(Utf16(id));
    }
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy>" + policies +
                       "</Policy></PolicyGroup></PolicyRoot><TaskRoot>" + tasks + "</TaskRoot></R>"),
              0);
    EXPECT_TRUE(PolicyIDs() == AllOf(expected));
    EXPECT_TRUE(TaskSoftwareIDs() == AllOf(expected));
}

}  // namespace zupm::test
