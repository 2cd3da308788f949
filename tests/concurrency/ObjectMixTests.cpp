// One product policy, one task, one enumerator, many threads.
#include <gtest/gtest.h>

#include "Together.h"
#include "tests/support/TempFolder.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 150;

std::u16string Number(int number)
{
    return Utf16(std::to_string(number));
}

ProductClient NewProduct()
{
    return ProductClient(Create<IPolicyProduct>());
}

TaskClient NewTask()
{
    return TaskClient(Create<IPolicyTask>());
}

}  // namespace

TEST(ProductMix, SettingsPutByManyThreads_AreAllThereInTheEnd)
{
    ProductClient product = NewProduct();
    std::vector<Round> work;
    for (int thread = 0; thread < kThreads; ++thread) {
        work.emplace_back([&product, thread](int round) {
            const std::u16string section = u"S" + Number((thread + round) % 4);
            const std::u16string name = Number(thread) + u"-" + Number(round);
            EXPECT_EQ(product.Put(section, name, name), 0);
            EXPECT_EQ(product.Get(section, name), (TextResult{0, name}));
        });
    }
    constexpr int kEach = 30;
    RunTogether(work, kEach);
    for (int thread = 0; thread < kThreads; ++thread) {
        for (int round = 0; round < kEach; ++round) {
            const std::u16string name = Number(thread) + u"-" + Number(round);
            EXPECT_EQ(product.Get(u"S" + Number((thread + round) % 4), name), (TextResult{0, name}));
        }
    }
}

TEST(ProductMix, LongValuesPutByManyThreads_AreNeverMixed)
{
    ProductClient product = NewProduct();
    std::vector<Round> work;
    for (int thread = 0; thread < kThreads; ++thread) {
        const auto letter = static_cast<char16_t>(u'a' + thread);
        work.emplace_back([&product, letter](int) {
            ASSERT_EQ(product.Put(u"S", u"N", std::u16string(1'000, letter)), 0);
            const std::u16string value = product.Get(u"S", u"N").text.value_or(u"");
            ASSERT_EQ(value.size(), 1'000U);
            EXPECT_EQ(value, std::u16string(1'000, value.front()));
        });
    }
    RunTogether(work, kRounds);
}

TEST(TaskMix, TasksWrittenIntoOneIniFileByManyThreads_LoseNoSettingOfOneAnother)
{
    constexpr int kSettings = 5;
    const TempFolder folder;
    const Bstr ini(folder.Path(u"tasks.ini"));
    std::vector<Round> work;
    for (int thread = 0; thread < 4; ++thread) {
        TaskClient task = NewTask();
        for (int setting = 0; setting < kSettings; ++setting) {
            ASSERT_EQ(task.Put(u"S" + Number(thread), u"N" + Number(setting), u"v"), 0);
        }
        work.emplace_back([&ini, task](int) { EXPECT_EQ(task.Object()->WriteTaskDataToIniFile(ini.Get()), 0); });
    }
    RunTogether(work, 3);
    const std::string text = folder.Read(u"tasks.ini");
    for (int thread = 0; thread < 4; ++thread) {
        std::string section = "[S" + std::to_string(thread) + "]\r\n";
        for (int setting = 0; setting < kSettings; ++setting) {
            section += "N" + std::to_string(setting) + "=v\r\n";
        }
        EXPECT_NE(text.find(section), std::string::npos) << section << " is not in\n" << text;
    }
}

TEST(TaskInfoMix, OneEnumeratorDrivenByManyThreads_GivesWholePairsOnly)
{
    const TempFolder folder;
    std::string text = "<R><TaskRoot>";
    for (int i = 0; i < 50; ++i) {
        const std::string id = std::to_string(i);
        text += "<TaskGroup SoftwareID='s" + id + "' TaskID='" + id + "'><Task/></TaskGroup>";
    }
    PolicyFileClient file;
    ASSERT_EQ(file.Load(folder.Write(u"tasks.xml", text + "</TaskRoot></R>")), 0);
    TaskInfoClient tasks = file.Tasks();
    const auto expectPair = [](const PairResult& pair) {
        if (pair.code == 0) {
            EXPECT_EQ(pair.softwareId, u"s" + pair.taskId);
        } else {
            EXPECT_EQ(pair.code, result::EndOfList);
        }
    };
    std::vector<Round> work(kThreads, [&](int round) { expectPair(round % 60 == 0 ? tasks.First() : tasks.Next()); });
    RunTogether(work, 600);
    EXPECT_EQ(tasks.All().size(), 50U);
}

}  // namespace zupm::test
