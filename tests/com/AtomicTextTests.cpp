// The text that is read and replaced without a lock.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "com/AtomicText.h"

namespace zupm::test {
namespace {

TEST(AtomicText, Get_GivesTheTextThatWasSetLast)
{
    AtomicText text(u"invalid");
    EXPECT_EQ(*text.Get(), u"invalid");
    text.Set(u"General");
    EXPECT_EQ(*text.Get(), u"General");
}

TEST(AtomicText, Get_StaysValidAfterTheTextWasReplaced)
{
    AtomicText text(std::u16string(100, u'a'));
    const auto kept = text.Get();
    text.Set(u"b");
    EXPECT_EQ(*kept, std::u16string(100, u'a'));
}

TEST(AtomicText, Readers_SeeWholeTextsWhileItIsReplaced)
{
    AtomicText text(std::u16string(40, u'a'));
    const auto write = [&](char16_t letter) {
        for (int i = 0; i < 2000; ++i) {
            text.Set(std::u16string(40, letter));
        }
    };
    std::vector<std::thread> writers;
    writers.emplace_back(write, u'b');
    writers.emplace_back(write, u'c');
    for (int i = 0; i < 2000; ++i) {
        const auto seen = text.Get();
        ASSERT_EQ(*seen, std::u16string(40, seen->front()));
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
}

}  // namespace
}  // namespace zupm::test
