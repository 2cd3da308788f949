#include "xml/scan/Names.h"

#include <gtest/gtest.h>

#include "text/Utf.h"
#include "xml/Exceptions.h"
#include "xml/ExpatGate.h"

namespace AdvXMLParser {
namespace {

bool DoesGateAccept(const std::string& text)
{
    try {
        (void)ExpatGate(text, std::nullopt).ReadRest();
        return true;
    } catch (const ParsingException&) {
        return false;
    }
}

std::string Utf8(char32_t character)
{
    std::string text;
    zupm::AppendUtf8(text, character);
    return text;
}

void ExpectTheGatesNames(char32_t character)
{
    const std::string c = Utf8(character);
    const bool isStart = NameLengthAt(c.c_str()) == c.size();
    const bool isFollower = NameLengthAt(("a" + c).c_str()) == 1 + c.size();
    EXPECT_EQ(isStart, DoesGateAccept("<" + c + "a/>")) << static_cast<std::uint32_t>(character);
    // White space, '/' and '>' end a name and leave the tag well-formed.
    const bool endsTag =
        character < 0x80 && std::string_view(" \t\r\n/>").find(static_cast<char>(character)) != std::string_view::npos;
    EXPECT_EQ(isFollower, !endsTag && DoesGateAccept("<a" + c + "a/>")) << static_cast<std::uint32_t>(character);
}

TEST(Names, AreMadeOfTheCharactersThatTheGateTakes)
{
    for (char32_t character = 1; character < 0xFFFE; ++character) {
        if (character < 0xD800 || character >= 0xE000) {
            ExpectTheGatesNames(character);
        }
    }
}

TEST(Names, HaveNoCharacterBeyondTheFirstPlane)
{
    for (char32_t character = 0x10000; character <= 0x10FFFF; character += 0x101) {
        EXPECT_EQ(NameLengthAt(("a" + Utf8(character)).c_str()), 1u) << static_cast<std::uint32_t>(character);
    }
    EXPECT_FALSE(DoesGateAccept("<a" + Utf8(0x10000) + "/>"));
    EXPECT_FALSE(DoesGateAccept("<a" + Utf8(0x20000) + "/>"));
}

TEST(Names, EndWhereBytesAreNoUtf8)
{
    for (const char* rest : {"\xC3", "\xC3(", "\xE4\xB8", "\xE4\xB8(", "\xE4", "\x80", "\xC1\x81", "\xE0\x81\x81",
                             "\xE0\x83\x80", "\xFF"}) {
        EXPECT_EQ(NameLengthAt(("a" + std::string(rest)).c_str()), 1u) << rest;
        EXPECT_EQ(NameLengthAt(rest), 0u) << rest;
    }
}

}  // namespace
}  // namespace AdvXMLParser
