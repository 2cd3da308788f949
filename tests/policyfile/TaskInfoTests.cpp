// GetTaskInfo: order, snapshot, slots.

#include <algorithm>

#include "PolicyFileTest.h"

namespace zupm::test {

namespace {

using namespace std::literals;

class PolicyFileTasks : public PolicyFileTest {
protected:
    /// Loads a file with those tasks, in that document order.
    void LoadTasks(const std::vector<std::pair<std::string, std::string>>& pairs)
    {
        std::string text = "<R><TaskRoot>";
        for (const auto& [software, task] : pairs) {
            text += "<TaskGroup SoftwareID='" + software + "' TaskID='" + task + "'><Task/></TaskGroup>";
        }
        ASSERT_EQ(LoadText(text + "</TaskRoot></R>"), 0);
    }
};

}  // namespace

TEST_F(PolicyFileTasks, NothingLoaded_GivesNotInitialisedAndANullSlot)
{
    OutObject<IUnknown> slot;
    EXPECT_EQ(m_file.Object()->GetTaskInfo(slot.Slot()), result::NotInitialised);
    EXPECT_TRUE(slot.IsNull());
}

TEST_F(PolicyFileTasks, NullSlot_GivesBadArgument)
{
    EXPECT_EQ(m_file.Object()->GetTaskInfo(nullptr), result::BadArgument);
}

TEST_F(PolicyFileTasks, FileWithoutTasks_HandsOutAnEnumeratorThatReportsTheEmptyList)
{
    LoadTasks({});
    TaskInfoClient tasks = m_file.Tasks();
    OutText softwareId;
    OutText taskId;
    EXPECT_EQ(tasks.Object()->GetFirst(softwareId.Slot(), taskId.Slot()), result::ListEmpty);
    EXPECT_TRUE(softwareId.Untouched());
    EXPECT_TRUE(taskId.Untouched());
    EXPECT_EQ(tasks.Next().code, result::EndOfList);
}

TEST_F(PolicyFileTasks, OneTask_IsFirstAndThenTheEndIsReported)
{
    LoadTasks({{"A", "1"}});
    TaskInfoClient tasks = m_file.Tasks();
    EXPECT_EQ(tasks.First(), (PairResult{0, u"A", u"1"}));
    OutText softwareId;
    OutText taskId;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(tasks.Object()->GetNext(softwareId.Slot(), taskId.Slot()), result::EndOfList);
    }
    EXPECT_TRUE(softwareId.Untouched());
    EXPECT_TRUE(taskId.Untouched());
    EXPECT_EQ(tasks.First(), (PairResult{0, u"A", u"1"})) << "it starts over";
}

TEST_F(PolicyFileTasks, Pairs_AreReturnedInCodeUnitOrderOfSoftwareIDAndThenTaskID)
{
    LoadTasks({{"a", "1"}, {"B", "1"}, {"A", "2"}, {"A", "10"}, {"A", ""}, {"\U0001F600", "x"}, {"\uFF5E", "x"}});
    // A character outside the BMP begins with a surrogate, which is less than U+FF5E.
    EXPECT_EQ(m_file.Tasks().All(),
              (std::vector{u"A/"s, u"A/10"s, u"A/2"s, u"B/1"s, u"a/1"s, u"\U0001F600/x"s, u"\uFF5E/x"s}));
}

TEST_F(PolicyFileTasks, GetNextBeforeGetFirst_ReportsTheEnd)
{
    LoadTasks({{"A", "1"}});
    TaskInfoClient tasks = m_file.Tasks();
    EXPECT_EQ(tasks.Next().code, result::EndOfList);
    EXPECT_EQ(tasks.First(), (PairResult{0, u"A", u"1"}));
}

TEST_F(PolicyFileTasks, Enumerator_IsASnapshotThatOutlivesTheFile)
{
    LoadTasks({{"A", "1"}, {"B", "2"}});
    TaskInfoClient tasks = m_file.Tasks();
    ASSERT_EQ(tasks.First(), (PairResult{0, u"A", u"1"}));
    ASSERT_EQ(m_file.RemoveTask(u"B", u"2"), 0);
    ASSERT_EQ(m_file.Add(m_file.NewTask(u"C", u"3")), 0);
    EXPECT_EQ(tasks.Next(), (PairResult{0, u"B", u"2"}));
    EXPECT_EQ(tasks.Next().code, result::EndOfList);
    EXPECT_EQ(m_file.Tasks().All(), (std::vector{u"A/1"s, u"C/3"s}));
    m_file = PolicyFileClient();
    EXPECT_EQ(tasks.All(), (std::vector{u"A/1"s, u"B/2"s}));
}

TEST_F(PolicyFileTasks, Slots_GetNewStringsInPlaceOfWhatTheyHeld)
{
    LoadTasks({{"A", "1"}, {"B", "2"}});
    TaskInfoClient tasks = m_file.Tasks();
    OutText softwareId;
    OutText taskId;
    EXPECT_EQ(tasks.Object()->GetFirst(softwareId.Slot(), taskId.Slot()), 0);
    EXPECT_EQ(softwareId.Text(), u"A");
    EXPECT_EQ(tasks.Object()->GetNext(softwareId.Slot(), taskId.Slot()), 0);
    EXPECT_EQ(softwareId.Text(), u"B");
    EXPECT_EQ(taskId.Text(), u"2");
}

TEST_F(PolicyFileTasks, TenThousandTasks_AreAllEnumerated)
{
    std::vector<std::pair<std::string, std::string>> pairs;
    for (int i = 0; i < 10'000; ++i) {
        pairs.emplace_back("P" + std::to_string(i % 7), std::to_string(i));
    }
    LoadTasks(pairs);
    const std::vector<std::u16string> all = m_file.Tasks().All();
    EXPECT_EQ(all.size(), pairs.size());
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
}

}  // namespace zupm::test
