// Editing and writing through the client header.
#include "ClientTest.h"

namespace zupm::test {
namespace {

using Editing = ClientTest;

TEST_F(Editing, Save_HandsBackAndWrites)
{
    Open().Policy("Scanner").Set("General", "Mode", "quick").Save();
    EXPECT_EQ(Open().Policy("Scanner").Value("General", "Mode"), "quick");
}

TEST_F(Editing, HandBack_ChangesTheDocumentAndNotTheDisk)
{
    const PolicyFile file = Open();
    file.Policy("Scanner").Set("New", "Name", "value").HandBack();
    EXPECT_EQ(file.Policy("Scanner").Value("New", "Name"), "value");
    EXPECT_EQ(m_folder.Read(u"policy.xml"), kSample);
    file.Save();
    EXPECT_EQ(Open().Policy("Scanner").Value("New", "Name"), "value");
}

TEST_F(Editing, CopyThatIsNotHandedBack_ChangesNothing)
{
    const PolicyFile file = Open();
    file.Policy("Scanner").Section("General").Set("Mode", "quick");
    EXPECT_EQ(file.Policy("Scanner").Value("General", "Mode"), "full");
}

TEST_F(Editing, RepeatedSave_WritesAgain)
{
    const PolicyFile file = Open();
    Policy policy = file.Policy("Scanner");
    policy.Set("General", "Mode", "1").Save();
    policy.Set("General", "Mode", "2").Save();
    EXPECT_FALSE(file.HasChangedOnDisk());
    EXPECT_EQ(Open().Policy("Scanner").Value("General", "Mode"), "2");
}

TEST_F(Editing, SectionsAndSettings_AreSetAndRemoved)
{
    const PolicyFile file = Open();
    Policy policy = file.Policy("Scanner");
    policy.Remove("Empty").Remove("General", "Mode");
    const Section section = policy.Section("General");
    section.Set("Enabled", "0").Set("Added", "x");
    section.Remove("Folder");
    for (const Setting& setting : section) {
        if (setting.Name() == "Added") {
            setting.Set("y");
        } else {
            setting.Remove();
        }
    }
    EXPECT_EQ(policy.SectionNames(), Texts{"General"});
    EXPECT_EQ(section.Names(), Texts{"Added"});
    EXPECT_EQ(section.Value("Added"), "y");
    section.Remove();
    EXPECT_EQ(policy.SectionNames(), Texts());
    policy.HandBack();
    EXPECT_EQ(file.Policy("Scanner").SectionNames(), Texts());
}

TEST_F(Editing, NewPolicy_IsInTheFileAfterHandBack)
{
    const PolicyFile file = Open();
    Policy policy = file.CreatePolicy("Gr\u00FC\u00DFe");
    EXPECT_EQ(policy.TakenVersion(), "");
    EXPECT_FALSE(file.ContainsPolicy("Gr\u00FC\u00DFe"));
    policy.Set("General", "Enabled", "1").HandBack();
    EXPECT_EQ(file.PolicyIds(), (Texts{"Scanner", "Updater", "Gr\u00FC\u00DFe"}));
    file.CreatePolicy("X").SetSoftwareId("Y").HandBack();
    EXPECT_TRUE(file.ContainsPolicy("Y"));
}

TEST_F(Editing, NewTask_HasItsIdAsNameAndNoPlaceholder)
{
    const PolicyFile file = Open();
    const Task task = file.CreateTask("Scanner", "Once");
    EXPECT_EQ(task.SoftwareId(), "Scanner");
    EXPECT_EQ(task.TaskId(), "Once");
    EXPECT_EQ(task.DisplayName(), "Once");
    EXPECT_EQ(task.Type() + task.Platforms() + task.Creator() + task.Version() + task.TakenVersion(), "");
    EXPECT_EQ(task.Priority(), 0);
}

TEST_F(Editing, TaskFields_AreInTheFileAfterSave)
{
    Open()
        .CreateTask("x", "y")
        .SetSoftwareId("Scanner")
        .SetTaskId("Once")
        .SetDisplayName("Once only")
        .SetType("Scan")
        .SetPlatforms("LNX")
        .SetCreator("Me")
        .SetPriority(7)
        .Set("Plan", "Hour", "3")
        .Save();
    const Task task = Open().Task("Scanner", "Once");
    EXPECT_EQ(task.DisplayName(), "Once only");
    EXPECT_EQ(task.Type(), "Scan");
    EXPECT_EQ(task.Platforms(), "LNX");
    EXPECT_EQ(task.Creator(), "Me");
    EXPECT_EQ(task.Priority(), 7);
    EXPECT_EQ(task.Value("Plan", "Hour"), "3");
    EXPECT_EQ(task.Version().size(), 14u);
}

TEST_F(Editing, PoliciesAndTasks_GoFromFileToFile)
{
    m_folder.Write(u"other.xml",
                   "<F><PolicyRoot><PolicyGroup><Policy/></PolicyGroup></PolicyRoot><TaskRoot version='1'/></F>");
    const PolicyFile other = PolicyFile::Open(PathOf(u"other.xml"));
    const PolicyFile file = Open();
    other.Add(file.Policy("Scanner"));
    other.Add(file.Task("Scanner", "Daily"));
    EXPECT_EQ(other.Policy("Scanner").Value("General", "Mode"), "full");
    EXPECT_EQ(other.Task("Scanner", "Daily").DisplayName(), "Daily scan");
    // Each goes back to the file that it was taken from.
    other.Save();
    EXPECT_EQ(PolicyFile::Open(PathOf(u"other.xml")).PolicyIds(), Texts{"Scanner"});
    EXPECT_EQ(m_folder.Read(u"policy.xml"), kSample);
}

TEST_F(Editing, PoliciesAndTasks_AreRemoved)
{
    const PolicyFile file = Open();
    file.RemovePolicy("Scanner");
    file.RemoveTask("Scanner", "Daily");
    EXPECT_EQ(file.PolicyIds(), Texts{"Updater"});
    EXPECT_EQ(file.TaskIds("Scanner"), Texts{"Weekly"});
}

TEST_F(Editing, SaveAs_WritesAnywhereAndLeavesTheFile)
{
    const PolicyFile file = Open(Access::ReadOnly);
    file.SaveAs(PathOf(u"co\u0301py \u5171\u6709.xml"));
    EXPECT_EQ(PolicyFile::Open(PathOf(u"co\u0301py \u5171\u6709.xml")).PolicyIds(), file.PolicyIds());
    EXPECT_EQ(m_folder.Read(u"policy.xml"), kSample);
}

TEST_F(Editing, WriteIni_ExportsTheTask)
{
    Open().Task("Scanner", "Daily").WriteIni(PathOf(u"task.ini"));
    const std::string text = m_folder.Read(u"task.ini");
    EXPECT_NE(text.find("TaskName=Daily scan"), std::string::npos) << text;
    EXPECT_NE(text.find("[Plan]\r\nHour=4"), std::string::npos) << text;
}

TEST_F(Editing, Chain_OfATemporaryGivesAValue)
{
    Policy policy = Open().Policy("Scanner").Set("General", "Mode", "a").Remove("Empty").Remove("General", "Folder");
    EXPECT_EQ(policy.Section("General").Names(), (Texts{"Enabled", "Mode"}));
    Policy& same = policy.Set("General", "Mode", "b");
    EXPECT_EQ(&same, &policy);
}

TEST_F(Editing, ObjectOfTheCaller_IsWrapped)
{
    const PolicyFile first = Open();
    const PolicyFile same(ComPtr<IPolicyFile>(first.Get()), "its name");
    EXPECT_EQ(same.Path(), "its name");
    EXPECT_EQ(same.PolicyIds(), first.PolicyIds());
    Policy policy(ComPtr<IPolicyProduct>(first.Policy("Scanner").Get()));
    EXPECT_EQ(policy.Value("General", "Mode"), "full");
    EXPECT_EQ(Thrown<Error>([&] { policy.HandBack(); }).Code(), result::NotInitialised);
    first.Add(policy);
}

class EditInPlace : public ClientTest {
protected:
    [[nodiscard]] Edit Begin() const { return Edit::Open(Path(), std::chrono::milliseconds(0)); }
};

TEST_F(EditInPlace, Commit_ReplacesTheFileAndUnlocksIt)
{
    Edit edit = Begin();
    EXPECT_FALSE(edit.HasChanged());
    edit->Policy("Scanner").Set("General", "Mode", "quick").HandBack();
    edit.Rehearse();
    edit.Commit();
    EXPECT_EQ(Open().Policy("Scanner").Value("General", "Mode"), "quick");
    EXPECT_EQ(edit.File().Policy("Scanner").Value("General", "Mode"), "quick");
    Begin().End();
}

TEST_F(EditInPlace, Save_OfAPolicyEndsTheEdit)
{
    Edit edit = Begin();
    edit->Policy("Scanner").Set("General", "Mode", "quick").Save();
    EXPECT_EQ(Open().Policy("Scanner").Value("General", "Mode"), "quick");
    Begin().End();
}

TEST_F(EditInPlace, SecondEditor_IsRefusedUntilTheEditEnds)
{
    Edit edit = Begin();
    EXPECT_EQ(Thrown<Locked>([&] { static_cast<void>(Begin()); }).File(), Path());
    EXPECT_EQ(Thrown<Locked>([&] { Open().Save(std::chrono::milliseconds(20)); }).Code(), result::FileLocked);
    edit.End();
    Begin().End();
}

TEST_F(EditInPlace, EndOfTheObject_UnlocksAlthoughPoliciesLive)
{
    const Policy policy = Begin()->Policy("Scanner");
    Begin().End();
    EXPECT_EQ(policy.Value("General", "Mode"), "full");
}

TEST_F(EditInPlace, ForeignChange_IsNoticedAndOverwrittenOnlyOnRequest)
{
    Edit edit = Begin();
    edit->RemovePolicy("Updater");
    ChangeOnDisk();
    EXPECT_TRUE(edit.HasChanged());
    EXPECT_EQ(Thrown<Changed>([&] { edit.Rehearse(); }).File(), Path());
    EXPECT_EQ(Thrown<Changed>([&] { edit.Commit(); }).Code(), result::FileChanged);
    EXPECT_EQ(m_folder.Read(u"policy.xml"), std::string(kSample) + "\n");
    edit.Rehearse(IfChanged::Overwrite);
    edit.Commit(IfChanged::Overwrite);
    EXPECT_EQ(Open().PolicyIds(), Texts{"Scanner"});
}

TEST_F(EditInPlace, MoveToItself_ChangesNothing)
{
    Edit edit = Begin();
    Edit& same = edit;
    edit = std::move(same);
    EXPECT_THROW(static_cast<void>(Begin()), Locked);
    // NOLINTBEGIN(clang-analyzer-cplusplus.Move): what it is for
    edit->Policy("Scanner").Set("General", "Mode", "quick").HandBack();
    edit.Commit();
    // NOLINTEND(clang-analyzer-cplusplus.Move)
    EXPECT_EQ(Open().Policy("Scanner").Value("General", "Mode"), "quick");
}

TEST_F(EditInPlace, Move_TakesTheLockAlong)
{
    m_folder.Write(u"other.xml", kSample);
    Edit edit = Begin();
    Edit moved = std::move(edit);
    EXPECT_THROW(static_cast<void>(edit.HasChanged()), Error);  // NOLINT(bugprone-use-after-move): what it is for
    EXPECT_THROW(static_cast<void>(Begin()), Locked);
    moved = Edit::Open(PathOf(u"other.xml"));
    Begin().End();
    EXPECT_EQ(moved.File().Path(), PathOf(u"other.xml"));
}

}  // namespace
}  // namespace zupm::test
