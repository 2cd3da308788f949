#include "text/AppendWritten.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zupm {
namespace {

TEST(AppendWritten, AppendsAsMuchAsWasWritten)
{
    std::string text = "before";
    AppendWritten(text, 100'000, [](char* bytes, std::size_t size) {
        std::fill_n(bytes, size - 1, 'x');
        return size - 1;
    });
    EXPECT_EQ(text, "before" + std::string(99'999, 'x'));
    EXPECT_EQ(text.data()[text.size()], '\0');
}

TEST(AppendWritten, NothingWrittenLeavesTheTextAsItWas)
{
    std::string text = "before";
    AppendWritten(text, 100'000, [](char*, std::size_t) { return std::size_t{0}; });
    EXPECT_EQ(text, "before");
    EXPECT_EQ(text.data()[text.size()], '\0');
}

TEST(AppendWritten, RoomThatIsThereStaysWhereItIs)
{
    std::string text;
    text.reserve(64);
    const char* const begin = text.data();
    const char* written = nullptr;
    AppendWritten(text, 64, [&](char* bytes, std::size_t) {
        written = bytes;
        *bytes = 'a';
        return std::size_t{1};
    });
    EXPECT_EQ(written, begin);
    EXPECT_EQ(text.data(), begin);
    EXPECT_EQ(text, "a");
}

}  // namespace
}  // namespace zupm
