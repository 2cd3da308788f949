#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "common/CzuLogger.h"

namespace zupm {
namespace {

struct Line {
    std::uint32_t subsystem;
    std::int32_t level;
    std::u16string text;

    friend bool operator==(const Line&, const Line&) = default;
};

class Logger : public testing::Test {
protected:
    Logger()
    {
        CzuLogger::SetSink([this](const LogMessage& message) {
            m_lines.push_back({message.subsystem, message.level, std::u16string(message.text)});
        });
    }
    ~Logger() override { CzuLogger::SetSink({}); }

    std::vector<Line> m_lines;
};

TEST_F(Logger, Sink_GetsEveryLevelFormatted)
{
    CzuLogger::AddMessageW(0x800, kLogException, u"plain %s");
    CzuLogger::AddMessageW(0x800, kLogFailure, u"line(%d), column(%d)", 3u, std::int32_t{-4});
    CzuLogger::AddMessageW(7, kLogDuplicate, u"%s", std::u16string(u"text"));
    CzuLogger::AddMessageW(7, 1000, u"%X", std::uint64_t{255});
    const std::vector<Line> expected{
        {0x800, 1, u"plain %s"}, {0x800, 7, u"line(3), column(-4)"}, {7, 8, u"text"}, {7, 1000, u"FF"}};
    EXPECT_EQ(m_lines, expected);
}

TEST_F(Logger, SinkThatThrows_DisturbsNoCaller)
{
    CzuLogger::SetSink([](const LogMessage&) { throw std::runtime_error("full"); });
    CzuLogger::AddMessageW(0x800, 1, u"text");
    int calls = 0;
    CzuLogger::SetSink([&](const LogMessage&) { ++calls; });
    CzuLogger::AddMessageW(0x800, 1, u"text");
    EXPECT_EQ(calls, 1);
}

TEST_F(Logger, ReplacedSink_IsFreedAndGetsNothingMore)
{
    auto token = std::make_shared<int>(0);
    CzuLogger::SetSink([token](const LogMessage&) { ++*token; });
    CzuLogger::AddMessageW(0x800, 1, u"text");
    CzuLogger::SetSink({});
    CzuLogger::AddMessageW(0x800, 1, u"text");
    EXPECT_EQ(*token, 1);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(Logger, ManyThreads_EnterTheSinkOneByOne)
{
    std::atomic<int> inside{0};
    std::atomic<int> mostInside{0};
    int calls = 0;
    CzuLogger::SetSink([&](const LogMessage&) {
        mostInside = std::max(mostInside.load(), ++inside);
        ++calls;
        --inside;
    });
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < 500; ++n) {
                CzuLogger::AddMessageW(0x800, 8, u"number %d", n);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(calls, 4000);
    EXPECT_EQ(mostInside, 1);
}

}  // namespace
}  // namespace zupm
