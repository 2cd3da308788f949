// Loading: what a good load leaves, what a second load keeps and drops, what the log gets.

#include "PolicyFileTest.h"

namespace zupm::test {

namespace {

using namespace std::literals;

class PolicyFileLoading : public PolicyFileTest {};

constexpr char kFirst[] =
    "<R><PolicyRoot version='12' AssignmentList='first'><PolicyGroup><Policy><Product SoftwareID='A'/></Policy>"
    "</PolicyGroup></PolicyRoot><TaskRoot version='7'><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup>"
    "</TaskRoot></R>";

constexpr char kSecond[] =
    "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='B'/></Policy></PolicyGroup></PolicyRoot>"
    "<TaskRoot><TaskGroup SoftwareID='B' TaskID='2'><Task/></TaskGroup></TaskRoot></R>";

}  // namespace

TEST_F(PolicyFileLoading, NewObject_HasNothingLoadedAndIsReadOnly)
{
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::NotInitialised);
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::NotInitialised);
    EXPECT_EQ(m_file.RemovePolicy(u"A"), result::ReadOnly);
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"0"}));
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"0"}));
    EXPECT_EQ(m_file.AssignmentList(), (TextResult{0, u""}));
    EXPECT_EQ(m_file.Buffer(), std::nullopt);
}

TEST_F(PolicyFileLoading, SecondLoad_LeavesNothingOfTheFirstReachable)
{
    ASSERT_EQ(LoadText(kFirst), 0);
    ASSERT_EQ(LoadText(kSecond), 0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound);
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::TaskNotFound);
    EXPECT_EQ(m_file.FindPolicy(u"B"), 0);
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"B/2"s}));
}

TEST_F(PolicyFileLoading, SameFileTwice_LogsNoDuplicates)
{
    ASSERT_EQ(LoadText(kFirst), 0);
    LogCapture log;
    ASSERT_EQ(LoadText(kFirst), 0);
    EXPECT_TRUE(log.Take().empty());
}

TEST_F(PolicyFileLoading, SecondFileWithoutVersions_KeepsThoseOfTheFirst)
{
    ASSERT_EQ(LoadText(kFirst), 0);
    ASSERT_EQ(LoadText(kSecond), 0);
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"12"}));
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"7"}));
    EXPECT_EQ(m_file.AssignmentList(), (TextResult{0, u""})) << "its PolicyRoot has none";
}

TEST_F(PolicyFileLoading, SecondFileWithoutPolicyRoot_KeepsTheAssignmentListOfTheFirst)
{
    ASSERT_EQ(LoadText(kFirst), 0);
    ASSERT_EQ(LoadText("<R><TaskRoot/></R>"), 0);
    EXPECT_EQ(m_file.AssignmentList(), (TextResult{0, u"first"}));
}

TEST_F(PolicyFileLoading, KeptPolicyVersion_IsStampedIntoTheSecondFile)
{
    ASSERT_EQ(LoadText(kFirst), 0);
    ASSERT_EQ(LoadText("<R><PolicyRoot/></R>"), 0);
    EXPECT_EQ(WriteOut(), "<R><PolicyRoot version=\"12\"/></R>");
}

TEST_F(PolicyFileLoading, FailedLoad_LeavesNothingLoadedAndKeepsTheVersions)
{
    ASSERT_EQ(LoadText(kFirst), 0);
    ASSERT_EQ(LoadText("<R>"), result::SyntaxError);
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::NotInitialised);
    EXPECT_EQ(m_file.FindTask(u"A", u"1"), result::NotInitialised);
    EXPECT_EQ(m_file.RemovePolicy(u"A"), result::NotInitialised);
    EXPECT_EQ(m_file.RemoveTask(u"A", u"1"), result::NotInitialised);
    EXPECT_EQ(m_file.Buffer(), std::nullopt);
    EXPECT_EQ(m_file.Write(m_folder.Path(u"out.xml")), result::NotInitialised);
    EXPECT_FALSE(m_folder.Has(u"out.xml"));
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"12"}));
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"7"}));
    EXPECT_EQ(m_file.AssignmentList(), (TextResult{0, u"first"}));
}

TEST_F(PolicyFileLoading, LoadAfterAFailedOne_Works)
{
    ASSERT_EQ(LoadText("<R>"), result::SyntaxError);
    ASSERT_EQ(LoadText(kFirst), 0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0);
}

TEST_F(PolicyFileLoading, FileThatCannotBeRead_GivesItsCodeAndOneLogLine)
{
    ASSERT_EQ(LoadText(kFirst), 0);
    LogCapture log;
    EXPECT_EQ(m_file.Load(m_folder.Path(u"missing.xml")), result::FileNotFound);
    EXPECT_EQ(log.Take(), (std::vector{LogLine{7, "CPolicyFile::Initialize() - Read policy file failed"}}));
    EXPECT_EQ(m_file.FindPolicy(u"A"), result::NotInitialised);
}

TEST_F(PolicyFileLoading, SyntaxErrorOnLine3Column7_LogsLineThenColumn)
{
    for (const char* text : {"<R>\n<a>\n    </b>\n</R>", "<R>\r\n<a>\r\n    </b>\r\n</R>", "<R>\r<a>\r    </b>\r</R>",
                             "<R>\n\n      \x01</R>", "<R>\n\n<aa b=c/></R>"}) {
        LogCapture log;
        ASSERT_EQ(LoadText(text), result::SyntaxError) << text;
        EXPECT_EQ(log.Take(), (std::vector{LogLine{7,
                                                   "CPolicyFile::Initialize() - XML parsing exception occurred - "
                                                   "syntax error at line(3), column(7)"},
                                           LogLine{7, "CPolicyFile::Initialize() - Initalize policy file failed"}}))
            << text;
    }
}

TEST_F(PolicyFileLoading, SoftwareIDsThatDifferInCaseOnly_AreTwoEntries)
{
    LogCapture log;
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='ab'/><Product SoftwareID='aB'/>"
                       "<Product SoftwareID='ab'/></Policy></PolicyGroup></PolicyRoot></R>"),
              0);
    EXPECT_EQ(m_file.FindPolicy(u"ab"), 0);
    EXPECT_EQ(m_file.FindPolicy(u"aB"), 0);
    EXPECT_EQ(log.Take(), (std::vector{LogLine{8,
                                               "CPolicyFile::InitializePolicyMap() -- SoftwareID ab exists "
                                               "already in the policy map"}}));
}

TEST_F(PolicyFileLoading, DuplicateLog_ShowsIdentifiersWithFormatCharactersAsTheyAre)
{
    LogCapture log;
    ASSERT_EQ(
        LoadText("<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='%s%d%n'/><Product SoftwareID='%s%d%n'/>"
                 "</Policy></PolicyGroup></PolicyRoot></R>"),
        0);
    EXPECT_EQ(log.Take(), (std::vector{LogLine{8,
                                               "CPolicyFile::InitializePolicyMap() -- SoftwareID %s%d%n exists "
                                               "already in the policy map"}}));
}

TEST_F(PolicyFileLoading, DuplicateLog_ShowsLongKeysWhole)
{
    const std::string software(3'000, 's');
    const std::string task(70'000, 't');
    const std::string name(5'000, 'n');
    const std::string product = "<Product SoftwareID='" + software + "'><Section name='" + name + "'><Setting name='" +
                                task + "'/><Setting name='" + task + "'/></Section><Section name='" + name +
                                "'/></Product>";
    LogCapture log;
    ASSERT_EQ(LoadText("<R><PolicyRoot><PolicyGroup><Policy>" + product + product +
                       "</Policy></PolicyGroup></PolicyRoot><TaskRoot><TaskGroup SoftwareID='" + software +
                       "' TaskID='" + task + "'><Task/><Task/></TaskGroup></TaskRoot></R>"),
              0);
    EXPECT_EQ(log.Take(), (std::vector{LogLine{8, "CPolicyFile::InitializePolicyMap() -- SoftwareID " + software +
                                                      " exists already in the policy map"},
                                       LogLine{8, "CPolicyFile::InitializeTaskMap() -- TaskID " + task +
                                                      " exists already in the task map for Software " + software}}));
    ASSERT_EQ(m_file.FindPolicy(std::u16string(software.size(), u's')), 0);
    EXPECT_EQ(log.Take(), (std::vector{LogLine{8, "CXMLDataObject::Initialize() -- Setting " + task +
                                                      " exists already in the setting map for the section " + name},
                                       LogLine{8, "CXMLDataObject::Initialize() -- Section " + name +
                                                      " exists already in the section map"}}));
}

TEST_F(PolicyFileLoading, ReadOnlyChoice_IsStoredEvenWhenTheLoadFails)
{
    ASSERT_EQ(LoadText("<R>", 1), result::SyntaxError);
    EXPECT_EQ(m_file.RemovePolicy(u"A"), result::ReadOnly);
    ASSERT_EQ(LoadText("<R>", 0), result::SyntaxError);
    EXPECT_EQ(m_file.RemovePolicy(u"A"), result::NotInitialised);
}

TEST_F(PolicyFileLoading, AnyReadOnlyValueOtherThan0_RefusesEdits)
{
    for (const LONG readOnly : {1, 2, -1, 0x100, 0x10000}) {
        ASSERT_EQ(LoadText(kFirst, readOnly), 0) << readOnly;
        EXPECT_EQ(m_file.RemovePolicy(u"A"), result::ReadOnly) << readOnly;
    }
    ASSERT_EQ(LoadText(kFirst, 0), 0);
    EXPECT_EQ(m_file.RemovePolicy(u"A"), 0);
}

TEST_F(PolicyFileLoading, ReloadFromDisk_DropsEditsThatWereNotWritten)
{
    ASSERT_EQ(LoadText(kFirst), 0);
    ASSERT_EQ(m_file.RemovePolicy(u"A"), 0);
    ASSERT_EQ(LoadText(kFirst), 0);
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0);
}

TEST_F(PolicyFileLoading, ObjectsHandedOut_OutliveAReloadAndTheFileObject)
{
    ProductClient product;
    TaskClient task;
    TaskInfoClient tasks;
    {
        PolicyFileClient file;
        ASSERT_EQ(file.Load(m_folder.Write(u"first.xml", kFirst)), 0);
        product = file.Policy(u"A");
        task = file.Task(u"A", u"1");
        tasks = file.Tasks();
        ASSERT_EQ(file.Load(m_folder.Write(u"second.xml", kSecond)), 0);
    }
    EXPECT_EQ(product.Put(u"S", u"N", u"v"), 0);
    EXPECT_EQ(product.Get(u"S", u"N"), (TextResult{0, u"v"}));
    EXPECT_EQ(task.SoftwareID(), (TextResult{0, u"A"}));
    EXPECT_EQ(tasks.All(), (std::vector{u"A/1"s}));
}

}  // namespace zupm::test
