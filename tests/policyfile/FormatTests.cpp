// What a policy file means: which elements count, how their keys and versions are read.

#include "PolicyFileTest.h"

namespace zupm::test {

namespace {

using namespace std::literals;

class PolicyFileFormat : public PolicyFileTest {};

struct VersionRow {
    const char* text;
    const char16_t* value;
};

constexpr VersionRow kVersionRows[] = {
    {"12", u"12"},
    {"0012", u"12"},
    {"12abc", u"12"},
    {"12 34", u"12"},
    {" 7", u"7"},
    {"+7", u"7"},
    {"-5", u"18446744073709551611"},
    {"9223372036854775807", u"9223372036854775807"},
    {"9223372036854775808", u"9223372036854775807"},
    {"-9223372036854775808", u"9223372036854775808"},
    {"-99999999999999999999", u"9223372036854775808"},
    {"&#49;&#x32;", u"12"},
    {"", u"0"},
    {"abc", u"0"},
    {"-", u"0"},
    {"+-3", u"0"},
    {"0x10", u"0"},
};

std::string Product(std::string_view id, std::string_view value)
{
    return "<Product SoftwareID=\"" + std::string(id) + "\"><Section name=\"S\"><Setting name=\"N\">" +
           std::string(value) + "</Setting></Section></Product>";
}

std::string Policies(std::string_view products)
{
    return "<PolicyRoot><PolicyGroup><Policy>" + std::string(products) + "</Policy></PolicyGroup></PolicyRoot>";
}

std::string Root(std::string_view inside)
{
    return "<R>" + std::string(inside) + "</R>";
}

}  // namespace

TEST_F(PolicyFileFormat, DocumentWithoutPolicyRootAndTaskRoot_LoadsWithEmptyIndexesAndVersions0)
{
    ASSERT_EQ(LoadText("<Whatever/>"), 0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound);
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::TaskNotFound);
    EXPECT_EQ(m_file.Tasks().First().code, result::ListEmpty);
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"0"}));
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"0"}));
    EXPECT_EQ(m_file.AssignmentList(), (TextResult{0, u""}));
}

TEST_F(PolicyFileFormat, RootElement_MayHaveAnyName)
{
    for (const char* name : {"PolicyFile", "PolicyRoot", "TaskRoot", "x:y", "\u00E4"}) {
        const std::string tag(name);
        ASSERT_EQ(LoadText("<" + tag + ">" + Policies(Product("A", "a")) + "</" + tag + ">"), 0) << name;
        EXPECT_EQ(m_file.FindPolicy(u"A"), 0) << name;
    }
}

TEST_F(PolicyFileFormat, PolicyRootVersion_IsReadAsALeadingSignedNumber)
{
    for (const VersionRow& row : kVersionRows) {
        ASSERT_EQ(LoadText(Root("<PolicyRoot version='" + std::string(row.text) + "'/>")), 0) << row.text;
        EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, row.value})) << row.text;
    }
}

TEST_F(PolicyFileFormat, TaskRootVersion_IsReadAsALeadingSignedNumber)
{
    for (const VersionRow& row : kVersionRows) {
        ASSERT_EQ(LoadText(Root("<TaskRoot version='" + std::string(row.text) + "'/>")), 0) << row.text;
        EXPECT_EQ(m_file.VersionTask(), (TextResult{0, row.value})) << row.text;
    }
}

TEST_F(PolicyFileFormat, LastRootThatCarriesAVersion_SetsIt)
{
    ASSERT_EQ(LoadText(Root("<TaskRoot version='1'/><PolicyRoot version='2'/><X version='9'/><TaskRoot version='3'/>"
                            "<PolicyRoot version='4'/><TaskRoot/><PolicyRoot/>")),
              0);
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"3"}));
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"4"}));
}

TEST_F(PolicyFileFormat, LastPolicyRoot_SetsTheAssignmentList)
{
    ASSERT_EQ(LoadText(Root("<PolicyRoot AssignmentList='one'/><PolicyRoot AssignmentList='t&#38;w&#xF6;'/>")), 0);
    EXPECT_EQ(m_file.AssignmentList(), (TextResult{0, u"t&w\u00F6"}));
}

TEST_F(PolicyFileFormat, LastPolicyRootWithoutAssignmentList_MakesItEmpty)
{
    ASSERT_EQ(LoadText(Root("<PolicyRoot AssignmentList='one'/><PolicyRoot/>")), 0);
    EXPECT_EQ(m_file.AssignmentList(), (TextResult{0, u""}));
}

TEST_F(PolicyFileFormat, SameSoftwareIDInDifferentPolicies_OnlyTheFirstIsReachable)
{
    LogCapture log;
    ASSERT_EQ(LoadText(Root("<PolicyRoot><PolicyGroup><Policy>" + Product("A", "first") + "</Policy><Policy>" +
                            Product("A", "second") + "</Policy></PolicyGroup></PolicyRoot>" +
                            Policies(Product("A", "third")))),
              0);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"first"}));
    const LogLine line{8, "CPolicyFile::InitializePolicyMap() -- SoftwareID A exists already in the policy map"};
    EXPECT_EQ(log.Take(), (std::vector{line, line}));
}

TEST_F(PolicyFileFormat, SeveralProductsInOnePolicy_AreSeparatePolicies)
{
    ASSERT_EQ(LoadText(Root(Policies(Product("A", "a") + Product("B", "b")))), 0);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"a"}));
    EXPECT_EQ(m_file.Policy(u"B").Get(u"S", u"N"), (TextResult{0, u"b"}));
}

TEST_F(PolicyFileFormat, SeveralPolicyRootsAndTaskRoots_AreAllIndexed)
{
    ASSERT_EQ(LoadText(Root("<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup></TaskRoot>" +
                            Policies(Product("A", "a")) + "<Other/>" +
                            "<TaskRoot><TaskGroup SoftwareID='B' TaskID='2'><Task/></TaskGroup></TaskRoot>" +
                            Policies(Product("B", "b")))),
              0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0);
    EXPECT_EQ(m_file.FindPolicy(u"B"), 0);
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"B/2"s}));
}

TEST_F(PolicyFileFormat, ProductWithoutSoftwareID_IsSkipped)
{
    ASSERT_EQ(LoadText(Root(Policies("<Product softwareid='A'/><Product/>" + Product("B", "b")))), 0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound);
    EXPECT_EQ(m_file.FindPolicy(u""), result::PolicyNotFound);
    EXPECT_EQ(m_file.FindPolicy(u"B"), 0);
}

TEST_F(PolicyFileFormat, EmptySoftwareID_IsAKeyLikeAnyOther)
{
    ASSERT_EQ(LoadText(Root(Policies(Product("", "empty")))), 0);
    EXPECT_EQ(m_file.Policy(u"").Get(u"S", u"N"), (TextResult{0, u"empty"}));
}

TEST_F(PolicyFileFormat, ElementsOfOtherNamesOrPlaces_AreNotIndexed)
{
    const std::string product = Product("A", "a");
    const std::string task = "<TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup>";
    for (const std::string& inside : {
             product,
             "<policyroot><PolicyGroup><Policy>" + product + "</Policy></PolicyGroup></policyroot>",
             "<PolicyRoot><policygroup><Policy>" + product + "</Policy></policygroup></PolicyRoot>",
             "<PolicyRoot><PolicyGroup><POLICY>" + product + "</POLICY></PolicyGroup></PolicyRoot>",
             "<PolicyRoot><PolicyGroup>" + product + "</PolicyGroup></PolicyRoot>",
             "<PolicyRoot><Policy>" + product + "</Policy></PolicyRoot>",
             Policies("<product SoftwareID='A'/><Product1 SoftwareID='A'/><p:Product SoftwareID='A' xmlns:p='p'/>"),
             "<Extra>" + Policies(product) + "</Extra>",
             task,
             "<taskroot>" + task + "</taskroot>",
             "<TaskRoot><Group>" + task + "</Group></TaskRoot>"s,
             "<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><task/></TaskGroup></TaskRoot>"s,
             "<TaskRoot><TaskGroup><Task SoftwareID='A' TaskID='1'/></TaskGroup></TaskRoot>"s,
         }) {
        ASSERT_EQ(LoadText(Root(inside)), 0) << inside;
        EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound) << inside;
        EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::TaskNotFound) << inside;
    }
}

TEST_F(PolicyFileFormat, TaskGroupLackingEitherKey_IsInvisible)
{
    ASSERT_EQ(LoadText(Root("<TaskRoot><TaskGroup SoftwareID='A'><Task TaskID='1'/></TaskGroup>"
                            "<TaskGroup TaskID='1'><Task SoftwareID='A'/></TaskGroup>"
                            "<TaskGroup SoftwareID='A' TaskID='2'/></TaskRoot>")),
              0);
    EXPECT_EQ(m_file.Tasks().First().code, result::ListEmpty);
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::TaskNotFound);
    EXPECT_EQ(m_file.FindTask(u"A", u""), result::TaskNotFound);
}

TEST_F(PolicyFileFormat, TaskGroupWithTwoTasks_IndexesTheFirstAndReportsTheSecond)
{
    LogCapture log;
    ASSERT_EQ(LoadText(Root("<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task TaskVersion='first'/>"
                            "<Task TaskVersion='second'/></TaskGroup></TaskRoot>")),
              0);
    EXPECT_EQ(m_file.Task(u"A", u"1").Version(), (TextResult{0, u"first"}));
    EXPECT_EQ(log.Take(), (std::vector{LogLine{8,
                                               "CPolicyFile::InitializeTaskMap() -- TaskID 1 exists already in "
                                               "the task map for Software A"}}));
}

TEST_F(PolicyFileFormat, SameTaskIDUnderOtherSoftware_IsAnotherTask)
{
    LogCapture log;
    ASSERT_EQ(LoadText(Root("<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup>"
                            "<TaskGroup SoftwareID='B' TaskID='1'><Task/></TaskGroup></TaskRoot>")),
              0);
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"B/1"s}));
    EXPECT_TRUE(log.Take().empty());
}

TEST_F(PolicyFileFormat, SamePairInDifferentTaskGroups_OnlyTheFirstIsReachableAndEveryOtherOneIsLogged)
{
    LogCapture log;
    ASSERT_EQ(LoadText(Root("<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task TaskVersion='first'/></TaskGroup>"
                            "<TaskGroup SoftwareID='A' TaskID='1'><Task TaskVersion='second'/></TaskGroup></TaskRoot>"
                            "<TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task TaskVersion='third'/></TaskGroup>"
                            "</TaskRoot>")),
              0);
    EXPECT_EQ(m_file.Task(u"A", u"1").Version(), (TextResult{0, u"first"}));
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s}));
    const LogLine line{8, "CPolicyFile::InitializeTaskMap() -- TaskID 1 exists already in the task map for Software A"};
    EXPECT_EQ(log.Take(), (std::vector{line, line}));
}

TEST_F(PolicyFileFormat, DuplicateLines_NameTheWholeKeys)
{
    const std::string software = std::string(400, 's') + "1";
    const std::string task = std::string(400, 't') + "2";
    const std::string group = "<TaskGroup SoftwareID='" + software + "' TaskID='" + task + "'><Task/></TaskGroup>";
    LogCapture log;
    ASSERT_EQ(LoadText(Root(Policies(Product(software, "a") + Product(software, "b")) + "<TaskRoot>" + group + group +
                            "</TaskRoot>")),
              0);
    EXPECT_EQ(log.Take(), (std::vector{LogLine{8, "CPolicyFile::InitializePolicyMap() -- SoftwareID " + software +
                                                      " exists already in the policy map"},
                                       LogLine{8, "CPolicyFile::InitializeTaskMap() -- TaskID " + task +
                                                      " exists already in the task map for Software " + software}}));
}

TEST_F(PolicyFileFormat, KeysAreComparedExactly)
{
    LogCapture log;
    ASSERT_EQ(LoadText(Root(Policies(Product("A", "upper") + Product("a", "lower") + Product(" A", "blank") +
                                     Product("\u00C4", "composed") + Product("A\u0308", "decomposed")))),
              0);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"upper"}));
    EXPECT_EQ(m_file.Policy(u"a").Get(u"S", u"N"), (TextResult{0, u"lower"}));
    EXPECT_EQ(m_file.Policy(u" A").Get(u"S", u"N"), (TextResult{0, u"blank"}));
    EXPECT_EQ(m_file.Policy(u"\u00C4").Get(u"S", u"N"), (TextResult{0, u"composed"}));
    EXPECT_EQ(m_file.Policy(u"A\u0308").Get(u"S", u"N"), (TextResult{0, u"decomposed"}));
    EXPECT_EQ(m_file.FindPolicy(u"A "), result::PolicyNotFound);
    EXPECT_EQ(m_file.FindPolicy(u"A\0"sv), result::PolicyNotFound);
    EXPECT_TRUE(log.Take().empty());
}

TEST_F(PolicyFileFormat, CommentsInstructionsAndWhiteSpaceBetweenElements_ChangeNothing)
{
    ASSERT_EQ(LoadText("<!-- a --><R> \n <?p?> x <PolicyRoot>\t<!-- <PolicyGroup> --><PolicyGroup>&#32;<Policy>y"
                       "<![CDATA[<Product SoftwareID='B'/>]]>" +
                       Product("A", "a") + "</Policy></PolicyGroup></PolicyRoot><!-- z --></R>"),
              0);
    EXPECT_EQ(m_file.Policy(u"A").Get(u"S", u"N"), (TextResult{0, u"a"}));
    EXPECT_EQ(m_file.FindPolicy(u"B"), result::PolicyNotFound);
}

}  // namespace zupm::test
