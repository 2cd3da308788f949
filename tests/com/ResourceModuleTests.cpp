// The resource module's handle, and the log lines whose texts it has.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "com/Log.h"
#include "com/ResourceModuleUse.h"
#include "common/Resources.h"

namespace zupm::test {
namespace {

class Resource : public testing::Test {
protected:
    Resource()
    {
        Release();
        CzuLogger::SetSink([this](const LogMessage& message) {
            lines.push_back(std::to_string(message.subsystem) + "/" + std::to_string(message.level));
            texts.emplace_back(message.text);
        });
    }
    ~Resource() override
    {
        CzuLogger::SetSink({});
        SetResourceFolder({});
        Release();
    }

    static void Release() { const ResourceModuleUse use; }

    std::vector<std::string> lines;
    std::vector<std::u16string> texts;
};

TEST_F(Resource, EnsureLoaded_LoadsOnce)
{
    EXPECT_EQ(ResourceModuleUse::Current(), nullptr);
    EXPECT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
    const auto first = ResourceModuleUse::Current();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
    EXPECT_EQ(ResourceModuleUse::Current(), first);
}

TEST_F(Resource, EnsureLoaded_FailsWithoutTheModuleAndSucceedsWhenItIsBack)
{
    SetResourceFolder(u"no-such-folder");
    EXPECT_EQ(ResourceModuleUse::EnsureLoaded(), result::GeneralFailure);
    EXPECT_EQ(ResourceModuleUse::Current(), nullptr);
    SetResourceFolder({});
    EXPECT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
}

TEST_F(Resource, AnyUserThatGoes_ReleasesTheModuleWhileOthersAndReadersStay)
{
    const ResourceModuleUse other;
    ASSERT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
    const auto reader = ResourceModuleUse::Current();
    Release();
    EXPECT_EQ(ResourceModuleUse::Current(), nullptr);
    EXPECT_FALSE(GetResString(reader.get(), 149).empty());
    EXPECT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
}

TEST_F(Resource, LoadingReleasingAndReading_MayHappenAtOnce)
{
    std::atomic<int> found = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                const ResourceModuleUse use;
                EXPECT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
                const auto module = ResourceModuleUse::Current();
                found += GetResString(module.get(), 149).empty() ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_GT(found, 0);
    EXPECT_EQ(ResourceModuleUse::Current(), nullptr);
}

TEST_F(Resource, ExceptionLine_IsTheOperationAloneWithoutTheModule)
{
    LogException(u"CToy::Do()");
    EXPECT_EQ(texts, std::vector<std::u16string>{u"CToy::Do()"});
    EXPECT_EQ(lines, std::vector<std::string>{"2048/1"});
}

TEST_F(Resource, ExceptionLine_HasTheTextOfTheModule)
{
    ASSERT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
    LogException(u"CToy::Do()");
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_TRUE(texts[0].ends_with(u"CToy::Do()"));
    EXPECT_GT(texts[0].size(), std::u16string_view(u"CToy::Do()").size());
}

TEST_F(Resource, PlatformErrorLine_HasOperationCodeAndDescriptionWithAndWithoutTheModule)
{
    LogPlatformError(u"CToy::Do()", static_cast<result::Code>(0x80004005u), u"no such thing");
    ASSERT_EQ(ResourceModuleUse::EnsureLoaded(), result::Success);
    LogPlatformError(u"CToy::Do()", static_cast<result::Code>(0x80004005u), u"no such thing");
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts[0], u"CToy::Do(): 0x80004005: no such thing");
    EXPECT_TRUE(texts[1].starts_with(u"CToy::Do(): "));
    EXPECT_TRUE(texts[1].ends_with(u" 0x80004005: no such thing"));
    EXPECT_EQ(lines, (std::vector<std::string>{"2048/1", "2048/1"}));
}

TEST_F(Resource, FailureLine_IsNotTakenForAFormat)
{
    LogFailure(u"100%s done");
    EXPECT_EQ(texts, std::vector<std::u16string>{u"100%s done"});
    EXPECT_EQ(lines, std::vector<std::string>{"2048/7"});
}

TEST_F(Resource, ParseFailure_IsTwoLinesWithLineBeforeColumn)
{
    LogParseFailure(u"CToy::Initialize()", 3, 7);
    EXPECT_EQ(texts, (std::vector<std::u16string>{
                         u"CToy::Initialize() - XML parsing exception occurred - syntax error at line(3), column(7)",
                         u"CToy::Initialize() - Initalize policy file failed"}));
    EXPECT_EQ(lines, (std::vector<std::string>{"2048/7", "2048/7"}));
}

TEST_F(Resource, DuplicateLine_TakesTextsOfEitherKind)
{
    LogDuplicate(u"%s twice in %s", std::u16string(u"A"), u"B");
    EXPECT_EQ(texts, std::vector<std::u16string>{u"A twice in B"});
    EXPECT_EQ(lines, std::vector<std::string>{"2048/8"});
}

}  // namespace
}  // namespace zupm::test
