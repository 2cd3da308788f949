#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "xml/scan/CharacterCheck.h"
#include "xml/scan/SameBytes.h"

namespace AdvXMLParser {
namespace {

TEST(Bytes, AreTheSameAsMemcmpFindsThem)
{
    constexpr std::uint32_t kLongest = 40;
    const std::string left = "0123456789abcdefghijklmnopqrstuvwxyzABCDE";
    for (std::uint32_t length = 0; length <= kLongest; ++length) {
        for (std::uint32_t place = 0; place < left.size(); ++place) {
            std::string right = left;
            right[place] = '!';
            EXPECT_EQ(AreBytesSame(left.data(), right.data(), length),
                      std::memcmp(left.data(), right.data(), length) == 0)
                << length << " bytes, another one at " << place;
        }
    }
}

TEST(Bytes, ACharacterHasTheLengthThatItsFirstByteAsksFor)
{
    const std::pair<std::string_view, std::uint32_t> rows[] = {{"A", 1},
                                                               {"\t", 1},
                                                               {"\x7F", 1},
                                                               {"\x1F", 0},
                                                               {"\xC2\x80", 2},
                                                               {"\xDF\xBF", 2},
                                                               {"\xC1\xBF", 0},
                                                               {"\xC2", 0},
                                                               {"\xE0\xA0\x80", 3},
                                                               {"\xEF\xBF\xBD", 3},
                                                               {"\xEF\xBF\xBE", 0},
                                                               {"\xE2\x82", 0},
                                                               {"\xF0\x90\x80\x80", 4},
                                                               {"\xF4\x8F\xBF\xBF", 4},
                                                               {"\xF4\x90\x80\x80", 0},
                                                               {"\xF0\x9F\x98", 0}};
    for (const auto& [text, length] : rows) {
        EXPECT_EQ(CharacterLengthAt(text.data()), length) << testing::PrintToString(text);
    }
}

}  // namespace
}  // namespace AdvXMLParser
