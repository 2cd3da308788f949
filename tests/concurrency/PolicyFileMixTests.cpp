// One policy file object, and one file on disk, many threads.
#include <gtest/gtest.h>

#include "Together.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

constexpr char kFile[] =
    "<R><PolicyRoot version='12' AssignmentList='all'><PolicyGroup Path='x'><Policy PathID='0_4' PolicyVersion='5'>"
    "<Product SoftwareID='A'><Section name='S'><Setting name='N'>v</Setting></Section></Product>"
    "<Product SoftwareID='A'/></Policy></PolicyGroup></PolicyRoot><TaskRoot version='7'>"
    "<TaskGroup SoftwareID='A' TaskID='1' TaskVersion='7'><Task TaskVersion='7'/></TaskGroup></TaskRoot></R>";

constexpr char kOtherFile[] =
    "<R><PolicyRoot version='13' AssignmentList='most'><PolicyGroup Path='x'><Policy PathID='0_4' PolicyVersion='5'>"
    "<Product SoftwareID='A'><Section name='S'><Setting name='N'>v2</Setting></Section></Product></Policy>"
    "</PolicyGroup></PolicyRoot><TaskRoot version='8'/></R>";

class PolicyFileMix : public ::testing::Test {
public:
    void SetUp() override
    {
        m_path = m_folder.Write(u"policy.xml", kFile);
        m_otherPath = m_folder.Write(u"other.xml", kOtherFile);
        ASSERT_EQ(m_file.Load(m_path), 0);
    }

    TempFolder m_folder;
    std::u16string m_path;
    std::u16string m_otherPath;
    PolicyFileClient m_file;
};

}  // namespace

TEST_F(PolicyFileMix, PoliciesAddedByManyThreads_AreAllThereInTheEnd)
{
    constexpr int kThreads = 8;
    constexpr int kEach = 15;
    std::vector<Round> work;
    for (int thread = 0; thread < kThreads; ++thread) {
        work.emplace_back([this, thread](int round) {
            const std::u16string id = Utf16(std::to_string(thread) + "-" + std::to_string(round));
            EXPECT_EQ(m_file.Add(m_file.NewPolicy(id)), 0);
            EXPECT_EQ(m_file.Add(m_file.NewTask(id, id)), 0);
            EXPECT_EQ(m_file.FindPolicy(id), 0);
        });
    }
    RunTogether(work, kEach);
    EXPECT_EQ(m_file.Tasks().All().size(), 1U + kThreads * kEach);
    for (int thread = 0; thread < kThreads; ++thread) {
        EXPECT_EQ(m_file.FindPolicy(Utf16(std::to_string(thread) + "-" + std::to_string(kEach - 1))), 0);
    }
}

TEST_F(PolicyFileMix, OneFileOnDiskWrittenAndLoadedByManyObjects_IsAlwaysWhole)
{
    const std::u16string path = m_folder.Write(u"shared.xml", kOtherFile);
    std::vector<Round> work;
    for (const char16_t* value : {u"one", u"two", u"three", u"four"}) {
        work.emplace_back([path, value](int) {
            PolicyFileClient file;
            ASSERT_EQ(file.Load(path), 0);
            ProductClient product = file.Policy(u"A");
            ASSERT_EQ(product.Put(u"S", u"N", std::u16string(2'000, *value) + value), 0);
            EXPECT_EQ(file.Add(product), 0);
            EXPECT_EQ(file.Write(path), 0);
        });
        work.emplace_back([path](int) {
            PolicyFileClient file;
            ASSERT_EQ(file.Load(path), 0);
            const std::u16string read = file.Policy(u"A").Get(u"S", u"N").text.value_or(u"");
            if (read != u"v2") {
                ASSERT_GT(read.size(), 2'000U);
                EXPECT_EQ(read.substr(0, 2'000), std::u16string(2'000, read[2'000]));
            }
        });
    }
    RunTogether(work, 40);
    EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"other.xml", "policy.xml", "shared.xml"}));
}

TEST_F(PolicyFileMix, OneProductAddedToTwoFilesWhileItChanges_NeverBlocks)
{
    PolicyFileClient other;
    ASSERT_EQ(other.Load(m_otherPath), 0);
    ProductClient product = m_file.Policy(u"A");
    TaskClient task = m_file.Task(u"A", u"1");
    RunTogether({[&](int) { EXPECT_EQ(m_file.Add(product), 0); }, [&](int) { EXPECT_EQ(other.Add(product), 0); },
                 [&](int round) { EXPECT_EQ(product.Put(u"S", Utf16(std::to_string(round % 7)), u"v"), 0); },
                 [&](int) { EXPECT_EQ(product.Data().code, 0); },
                 [&](int) {
                     EXPECT_TRUE(IsOneOf(product.RemoveSection(u"S"), {0, result::SectionNotFound}));
                 },
                 [&](int) { EXPECT_EQ(m_file.Add(task), 0); }, [&](int) { EXPECT_EQ(other.Add(task), 0); },
                 [&](int round) { EXPECT_EQ(task.Put(u"S", Utf16(std::to_string(round % 7)), u"v"), 0); },
                 [&](int) { EXPECT_EQ(task.Data().code, 0); }},
                60);
    EXPECT_EQ(m_file.FindPolicy(u"A"), 0);
    EXPECT_EQ(other.FindTask(u"A", u"1"), 0);
}

}  // namespace zupm::test
