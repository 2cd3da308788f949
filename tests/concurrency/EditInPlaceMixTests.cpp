// Threads that edit one file in place: through one object, and through objects of their own.
#include <gtest/gtest.h>

#include "Together.h"
#include "tests/support/TempFolder.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

constexpr int kThreads = 6;
constexpr int kRounds = 30;

constexpr char kText[] =
    "<R><PolicyRoot version='1'><PolicyGroup><Policy><Product SoftwareID='A'/></Policy></PolicyGroup></PolicyRoot></R>";

class EditMix : public testing::Test {
protected:
    TempFolder m_folder;
    Bstr m_path{m_folder.Write(u"policy.xml", kText)};
};

}  // namespace

TEST_F(EditMix, OneObjectUsedByEveryThread_GivesDocumentedCodesAndAWholeFile)
{
    const PolicyFileClient file;
    const auto edit = ComPtr<IPolicyFile>(file.Object()).Query<IPolicyFileEdit>();
    const std::vector<Round> work = {
        [&](int) { EXPECT_EQ(edit->OpenForEdit(m_path.Get(), 10'000), 0); },
        [&](int) {
            LONG changed = -1;
            EXPECT_TRUE(IsOneOf(edit->HasFileChanged(&changed), {0, result::NotInitialised}));
        },
        [&](int) {
            EXPECT_TRUE(IsOneOf(edit->RehearseCommit(0), {0, result::NotInitialised}));
        },
        [&](int) {
            EXPECT_TRUE(IsOneOf(edit->CommitEdit(0), {0, result::NotInitialised}));
        },
        [&](int) { EXPECT_EQ(edit->EndEdit(), 0); },
        [&](int round) {
            if (round % 5 == 0) {
                EXPECT_EQ(file.Object()->InitializeFile(m_path.Get(), 0), 0);
            }
        },
    };
    RunTogether(work, kRounds);
    EXPECT_EQ(edit->EndEdit(), 0);
    EXPECT_EQ(PolicyFileClient().Load(m_path.Text()), 0);
}

TEST_F(EditMix, ObjectsOfTheirOwn_TakeTurnsAndLoseNothing)
{
    std::vector<Round> work;
    for (int thread = 0; thread < kThreads; ++thread) {
        work.emplace_back([&, thread](int round) {
            PolicyFileClient file;
            const auto edit = ComPtr<IPolicyFile>(file.Object()).Query<IPolicyFileEdit>();
            ASSERT_EQ(edit->OpenForEdit(m_path.Get(), 600'000), 0);
            const std::string id = std::to_string(thread) + "-" + std::to_string(round);
            ASSERT_EQ(file.Add(file.NewPolicy(std::u16string(id.begin(), id.end()))), 0);
            ASSERT_EQ(edit->CommitEdit(0), 0);
        });
    }
    RunTogether(work, kRounds);
    PolicyFileClient reader;
    ASSERT_EQ(reader.Load(m_path.Text()), 0);
    for (int thread = 0; thread < kThreads; ++thread) {
        for (int round = 0; round < kRounds; ++round) {
            const std::string id = std::to_string(thread) + "-" + std::to_string(round);
            EXPECT_EQ(reader.FindPolicy(std::u16string(id.begin(), id.end())), 0) << id;
        }
    }
}

}  // namespace zupm::test
