// Reading through the client header: lists, ranges, values as stored and as expanded.
#include <algorithm>
#include <iterator>
#include <ranges>

#include "ClientTest.h"
#include "common/Macros.h"

namespace zupm::test {
namespace {

using Reading = ClientTest;

template <class Range>
Texts NamesIn(const Range& range)
{
    Texts names;
    for (auto& item : range) {
        names.push_back(item.Name());
    }
    return names;
}

TEST_F(Reading, File_HasItsVersionsAndItsAssignmentList)
{
    const PolicyFile file = Open();
    EXPECT_EQ(file.Path(), Path());
    EXPECT_EQ(file.PolicyVersion(), "20250101000000");
    EXPECT_EQ(file.TaskVersion(), "20250103000000");
    EXPECT_EQ(file.AssignmentList(), "all");
    EXPECT_EQ(file.Text(), kSample);
}

TEST_F(Reading, PoliciesAndTasks_AreListedInFileOrder)
{
    const PolicyFile file = Open();
    EXPECT_EQ(file.PolicyIds(), (Texts{"Scanner", "Updater"}));
    EXPECT_EQ(file.TaskSoftwareIds(), (Texts{"Scanner", "Updater"}));
    EXPECT_EQ(file.TaskIds("Scanner"), (Texts{"Daily", "Weekly"}));
    EXPECT_EQ(file.TaskIds("Nobody"), Texts());
}

TEST_F(Reading, Ranges_GiveEveryPolicyAndTask)
{
    const PolicyFile file = Open();
    Texts policies;
    for (auto& policy : file.Policies()) {
        policies.push_back(policy.SoftwareId());
    }
    Texts tasks;
    for (const Task& task : file.Tasks()) {
        tasks.push_back(task.SoftwareId() + "/" + task.TaskId());
    }
    EXPECT_EQ(policies, (Texts{"Scanner", "Updater"}));
    EXPECT_EQ(tasks, (Texts{"Scanner/Daily", "Scanner/Weekly", "Updater/Update"}));
    const auto ofUpdater = file.Tasks("Updater");
    EXPECT_EQ(std::distance(ofUpdater.begin(), ofUpdater.end()), 1);
    EXPECT_EQ(file.Tasks("Nobody").begin(), file.Tasks("Nobody").end());
}

TEST_F(Reading, Policy_HasSectionsAndSettingsInFileOrder)
{
    const Policy policy = Open().Policy("Scanner");
    EXPECT_EQ(policy.SoftwareId(), "Scanner");
    EXPECT_EQ(policy.SectionNames(), (Texts{"General", "Empty"}));
    EXPECT_EQ(NamesIn(policy.Sections()), (Texts{"General", "Empty"}));
    EXPECT_EQ(policy.Section("General").Names(), (Texts{"Enabled", "Mode", "Folder"}));
    EXPECT_EQ(NamesIn(policy.Section("General")), (Texts{"Enabled", "Mode", "Folder"}));
    EXPECT_EQ(NamesIn(policy.Section("Empty")), Texts());
    EXPECT_EQ(policy.TakenVersion(), "20250102000000");
    EXPECT_NE(policy.Xml().find("<Setting name=\"Mode\">full</Setting>"), std::string::npos);
}

TEST_F(Reading, Setting_HasItsNameItsSectionAndItsValue)
{
    const Section section = Open().Policy("Scanner").Section("General");
    const Setting setting = *section.begin();
    EXPECT_EQ(section.Name(), "General");
    EXPECT_EQ(setting.Name(), "Enabled");
    EXPECT_EQ(setting.SectionName(), "General");
    EXPECT_EQ(setting.Value(), "1");
    EXPECT_EQ(setting.Stored(), "1");
    EXPECT_EQ(section.Value("Mode"), "full");
}

TEST_F(Reading, Macros_AreExpandedInTheValueAndNotInTheStoredText)
{
    RegisterMacro(u"Home", u"/home/agent");
    const Policy policy = Open().Policy("Scanner");
    const Section section = policy.Section("General");
    EXPECT_EQ(policy.Value("General", "Folder"), "/home/agent/in");
    EXPECT_EQ(policy.Find("General", "Folder"), "/home/agent/in");
    EXPECT_EQ(section.Value("Folder"), "/home/agent/in");
    EXPECT_EQ(policy.Stored("General", "Folder"), "<Home>/in");
    EXPECT_EQ(policy.FindStored("General", "Folder"), "<Home>/in");
    EXPECT_EQ(section.Stored("Folder"), "<Home>/in");
    UnregisterAllMacros();
    EXPECT_EQ(policy.Value("General", "Folder"), "<Home>/in");
}

TEST_F(Reading, Task_HasItsFieldsAndItsSections)
{
    const Task task = Open().Task("Scanner", "Daily");
    EXPECT_EQ(task.SoftwareId(), "Scanner");
    EXPECT_EQ(task.TaskId(), "Daily");
    EXPECT_EQ(task.DisplayName(), "Daily scan");
    EXPECT_EQ(task.Type(), "Scan");
    EXPECT_EQ(task.Platforms(), "x64");
    EXPECT_EQ(task.Creator(), "Admin");
    EXPECT_EQ(task.Priority(), -3);
    EXPECT_EQ(task.Version(), "20250103000000");
    EXPECT_EQ(task.TakenVersion(), "20250103000000");
    EXPECT_EQ(task.Value("Plan", "Hour"), "4");
    EXPECT_NE(task.Xml().find("<TaskData>"), std::string::npos);
}

TEST_F(Reading, WhatIsMissing_IsFoundMissingWithoutAnException)
{
    const PolicyFile file = Open();
    const Policy policy = file.Policy("Scanner");
    EXPECT_TRUE(file.ContainsPolicy("Scanner"));
    EXPECT_FALSE(file.ContainsPolicy("scanner"));
    EXPECT_FALSE(file.FindPolicy("Nobody"));
    EXPECT_EQ(file.FindPolicy("Updater")->Value("General", "Interval"), "12");
    EXPECT_TRUE(file.ContainsTask("Scanner", "Daily"));
    EXPECT_FALSE(file.ContainsTask("Scanner", "Update"));
    EXPECT_FALSE(file.FindTask("Nobody", "Daily"));
    EXPECT_EQ(file.FindTask("Updater", "Update")->TaskId(), "Update");
    EXPECT_TRUE(policy.Contains("Empty"));
    EXPECT_FALSE(policy.Contains("General2"));
    EXPECT_TRUE(policy.Contains("General", "Mode"));
    EXPECT_FALSE(policy.Contains("General", "mode"));
    EXPECT_EQ(policy.Find("Nowhere", "Mode"), std::nullopt);
    EXPECT_EQ(policy.FindStored("General", "None"), std::nullopt);
    EXPECT_TRUE(policy.Section("Empty").Exists());
    EXPECT_FALSE(policy.Section("Nowhere").Exists());
    EXPECT_EQ(policy.Section("Nowhere").Find("Mode"), std::nullopt);
    EXPECT_FALSE(policy.Section("General").Contains("None"));
}

TEST_F(Reading, StoredSettings_AreReadWithoutACopy)
{
    const PolicyFile file = Open(Access::ReadOnly);
    EXPECT_EQ(file.FindStored("Scanner", "General", "Folder"), "<Home>/in");
    EXPECT_EQ(file.FindStored("Nobody", "General", "Folder"), std::nullopt);
    EXPECT_EQ(file.FindStored("Scanner", "None", "Folder"), std::nullopt);
    EXPECT_EQ(file.FindStored("Scanner", "General", "None"), std::nullopt);
    EXPECT_EQ(file.FindStoredInTask("Scanner", "Daily", "Plan", "Hour"), "4");
    EXPECT_EQ(file.FindStoredInTask("Scanner", "Update", "Plan", "Hour"), std::nullopt);
    EXPECT_EQ(file.FindStoredInTask("Scanner", "Daily", "Plan", "Minute"), std::nullopt);
    PolicyFile moved = file;
    const PolicyFile taken = std::move(moved);
    EXPECT_EQ(Thrown<Error>([&] { static_cast<void>(moved.FindStored("Scanner", "General", "Mode")); }).Code(),
              result::NotInitialised);
}

TEST_F(Reading, StoredSettings_OfAFileThatWasNotLoadedAreAnError)
{
    const PolicyFile file(client::Create<IPolicyFile>(), "policy.xml");
    EXPECT_STREQ(Thrown<Error>([&] { static_cast<void>(file.FindStored("Scanner", "General", "Mode")); }).what(),
                 "policy.xml: policy Scanner: section \"General\", setting \"Mode\": The object is not initialised: no "
                 "policy file is loaded, or no data is bound. [NotInitialised, 0xFFFFFFFC]");
}

TEST_F(Reading, WhatIsFoundMissing_LeavesNoErrorInformation)
{
    const PolicyFile file = Open();
    EXPECT_EQ(file.FindStored("Nobody", "General", "Mode"), std::nullopt);
    const Policy policy = file.Policy("Scanner");
    EXPECT_EQ(policy.Find("Nowhere", "Mode"), std::nullopt);
    EXPECT_FALSE(policy.Contains("Nowhere"));
    EXPECT_EQ(client::TakeDescription(), "");
}

TEST_F(Reading, FileWithoutOddities_HasNoNotices)
{
    const Notices notices = Open().Notices();
    EXPECT_EQ(notices.Count(), 0u);
    EXPECT_EQ(notices.begin(), notices.end());
}

TEST_F(Reading, Notices_HaveTheirKindPlaceAndIds)
{
    m_folder.Write(u"policy.xml",
                   "<F>\n<TaskRoot version='1'>\n"
                   "<TaskGroup SoftwareID='S' TaskID='T'><Task/></TaskGroup>\n"
                   "<TaskGroup SoftwareID='S' TaskID='T'>\n  <Task/></TaskGroup>\n</TaskRoot>\n</F>");
    const Notices all = Open().Notices();
    EXPECT_EQ(all.Count(), 1u);
    const std::vector<Notice> notices(all.begin(), all.end());
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].kind, NoticeKind::RepeatedTask);
    EXPECT_EQ(notices[0].line, 5);
    EXPECT_EQ(notices[0].column, 3);
    EXPECT_EQ(notices[0].softwareId, "S");
    EXPECT_EQ(notices[0].taskId, "T");
    EXPECT_FALSE(notices[0].text.empty());
}

TEST_F(Reading, Iterators_WorkWithAlgorithms)
{
    const Section section = Open().Policy("Scanner").Section("General");
    const auto found =
        std::find_if(section.begin(), section.end(), [](const Setting& setting) { return setting.Value() == "full"; });
    ASSERT_NE(found, section.end());
    EXPECT_EQ(found->Name(), "Mode");
    auto next = found;
    EXPECT_EQ(next++->Name(), "Mode");
    EXPECT_EQ(next->Name(), "Folder");
    EXPECT_EQ(++next, section.end());
    EXPECT_EQ(found->Name(), "Mode");
    const std::vector<Setting> all(section.begin(), section.end());
    EXPECT_EQ(all.size(), 3u);
}

static_assert(std::input_iterator<Section::iterator>);
static_assert(std::ranges::input_range<const Section>);
static_assert(std::ranges::input_range<const Policies>);
static_assert(std::ranges::input_range<const Tasks>);
static_assert(std::ranges::input_range<const Sections>);
static_assert(std::ranges::input_range<const Notices>);

TEST_F(Reading, Ranges_WorkWithRangeAlgorithms)
{
    const Policy policy = Open().Policy("Scanner");
    const auto isShort = [](const Setting& setting) { return setting.Value().size() < 5; };
    EXPECT_EQ(std::ranges::count_if(policy.Section("General"), isShort), 2);
    EXPECT_EQ(std::ranges::distance(policy.Sections()), 2);
}

// Older versions of clang cannot compile the views of libstdc++.
#if !defined(__clang__) || __clang_major__ >= 16
TEST_F(Reading, Ranges_WorkWithViews)
{
    const Section section = Open().Policy("Scanner").Section("General");
    auto names = section | std::views::filter([](const Setting& setting) { return setting.Value().size() < 5; }) |
                 std::views::transform([](const Setting& setting) { return setting.Name(); });
    Texts brief;
    std::ranges::copy(names, std::back_inserter(brief));
    EXPECT_EQ(brief, (Texts{"Enabled", "Mode"}));
}
#endif

}  // namespace
}  // namespace zupm::test
