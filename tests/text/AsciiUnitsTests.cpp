#include "text/AsciiUnits.h"

#include <gtest/gtest.h>

#include <string>

namespace zupm {
namespace {

std::string Letters(std::size_t size)
{
    std::string text;
    while (text.size() < size) {
        text += static_cast<char>('a' + text.size() % 26);
    }
    return text;
}

TEST(AsciiUnits, BytesOfAnyLengthAreWidened)
{
    for (std::size_t size = 0; size < 40; ++size) {
        const std::string bytes = Letters(size) + "\xE4";
        std::u16string units(bytes.size(), u'?');
        WidenBytes(bytes.data(), bytes.size(), units.data());
        EXPECT_EQ(units, std::u16string(bytes.begin(), bytes.end() - 1) + u'\u00E4') << size;
    }
}

TEST(AsciiUnits, OneDifferenceAnywhereIsSeen)
{
    for (std::size_t size = 0; size < 20; ++size) {
        const std::string bytes = Letters(size);
        const std::u16string units(bytes.begin(), bytes.end());
        EXPECT_TRUE(IsSameAscii(bytes.data(), units.data(), size)) << size;
        for (std::size_t place = 0; place < size; ++place) {
            for (const unsigned bit : {0x01u, 0x40u, 0x80u, 0x100u, 0x8000u}) {
                std::u16string other = units;
                other[place] = static_cast<char16_t>(other[place] ^ bit);
                EXPECT_FALSE(IsSameAscii(bytes.data(), other.data(), size)) << size << " " << place << " " << bit;
            }
        }
    }
}

TEST(AsciiUnits, WhatIsNotAsciiIsNotTheSame)
{
    for (std::size_t size = 1; size < 20; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            std::string bytes = Letters(size);
            std::u16string units(bytes.begin(), bytes.end());
            bytes[place] = '\xE4';
            units[place] = u'\u00E4';
            EXPECT_FALSE(IsSameAscii(bytes.data(), units.data(), size)) << size << " " << place;
        }
    }
}

}  // namespace
}  // namespace zupm
