#include "xml/scan/MarkFinder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

#include "text/Utf.h"
#include "xml/scan/MarkReader.h"

namespace AdvXMLParser {
namespace {

constexpr std::uint32_t kPieces[] = {1, 63, 64, 65, 128, 4096, 100'000};

/// The marks that a form finds, or nothing.
std::optional<std::vector<std::uint32_t>> MarksOf(const std::string& text, const MarkFinder& finder,
                                                  std::uint32_t piece)
{
    MarkReader reader(text, 0, finder, piece);
    std::vector<std::uint32_t> marks;
    while (reader.Peek() < text.size()) {
        marks.push_back(reader.Next());
    }
    return reader.IsValid() ? std::optional(marks) : std::nullopt;
}

bool IsMark(char c)
{
    return std::string_view("<>&\"'").find(c) != std::string_view::npos;
}

bool IsForbidden(char32_t c)
{
    return (c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c == 0xFFFE || c == 0xFFFF;
}

/// The same, found in the simplest way.
std::optional<std::vector<std::uint32_t>> ExpectedMarks(const std::string& text)
{
    const std::optional<std::u16string> units = zupm::ToUtf16(text);
    if (!units || std::any_of(units->begin(), units->end(), IsForbidden)) {
        return std::nullopt;
    }
    std::vector<std::uint32_t> marks;
    for (std::uint32_t at = 0; at < text.size(); ++at) {
        if (IsMark(text[at])) {
            marks.push_back(at);
        }
    }
    return marks;
}

void ExpectSameInEveryForm(const std::string& text, const std::string& label)
{
    const auto expected = ExpectedMarks(text);
    for (const MarkFinder& finder : MarkFindersFor(ThisProcessor())) {
        for (const std::uint32_t piece : kPieces) {
            ASSERT_EQ(MarksOf(text, finder, piece), expected)
                << finder.name << ", pieces of " << piece << ", " << label;
        }
    }
}

TEST(MarkFinder, EveryProcessorHasThePlainForm)
{
    EXPECT_EQ(MarkFindersFor({}).front().name, "plain");
    EXPECT_EQ(MarkFindersFor(ThisProcessor()).front().name, "plain");
}

bool IsGivenAvx2(const Processor& processor)
{
    const std::span<const MarkFinder> finders = MarkFindersFor(processor);
    return std::any_of(finders.begin(), finders.end(), [](const MarkFinder& finder) { return finder.name == "AVX2"; });
}

TEST(MarkFinder, TheFormForAvx2NeedsBmiToo)
{
    EXPECT_FALSE(IsGivenAvx2({.hasAvx2 = false, .hasBmi = false}));
    EXPECT_FALSE(IsGivenAvx2({.hasAvx2 = false, .hasBmi = true}));
    EXPECT_FALSE(IsGivenAvx2({.hasAvx2 = true, .hasBmi = false}));
    const bool hasFormsWithVectors = MarkFindersFor({}).size() > 1;
    EXPECT_EQ(IsGivenAvx2({.hasAvx2 = true, .hasBmi = true}), hasFormsWithVectors);
}

TEST(MarkFinder, TheFastestIsTheLastThatTheProcessorHas)
{
    EXPECT_EQ(FastestMarkFinder().name, MarkFindersFor(ThisProcessor()).back().name);
}

TEST(MarkFinder, EveryFormClassifiesEveryByteAtEveryPlace)
{
    for (int byte = 0; byte < 256; ++byte) {
        for (const std::size_t place : {0u, 1u, 15u, 16u, 31u, 32u, 62u, 63u, 64u, 127u, 128u, 199u}) {
            std::string text(200, 'x');
            text[place] = static_cast<char>(byte);
            ExpectSameInEveryForm(text, "byte " + std::to_string(byte) + " at " + std::to_string(place));
        }
    }
}

TEST(MarkFinder, EveryFormFindsManyMarks)
{
    for (const std::size_t size : {1u, 8u, 9u, 63u, 64u, 65u, 640u, 20'000u}) {
        ExpectSameInEveryForm(std::string(size, '<'), std::to_string(size) + " marks");
    }
}

/// Every character at the end of a block, of a vector, and of the text.
TEST(MarkFinder, EveryFormKnowsEveryCharacter)
{
    constexpr char32_t kStep = 61;  // no character is left out that begins or ends a range
    const char32_t limits[] = {0x7F,   0x80,   0x7FF,   0x800,   0xD7FF,  0xE000,  0xFFFD,
                               0xFFFE, 0xFFFF, 0x10000, 0x1FFFE, 0x1FFFF, 0x10FFFF};
    std::vector<char32_t> characters(std::begin(limits), std::end(limits));
    for (char32_t c = 0x80; c <= 0x10FFFF; c += kStep) {
        if (c < 0xD800 || c >= 0xE000) {
            characters.push_back(c);
        }
    }
    std::size_t blanks = 0;
    for (const char32_t c : characters) {
        std::string text(60 + blanks++ % 8, ' ');
        zupm::AppendUtf8(text, c);
        const auto expected = ExpectedMarks(text);
        for (const MarkFinder& finder : MarkFindersFor(ThisProcessor())) {
            ASSERT_EQ(MarksOf(text, finder, 64), expected) << finder.name << " " << static_cast<std::uint32_t>(c);
            ASSERT_EQ(MarksOf(text + std::string(64, ' '), finder, 4096), expected) << finder.name;
        }
    }
}

/// Sequences of bytes near those that are valid, across the boundaries of blocks.
TEST(MarkFinder, EveryFormValidatesAlike)
{
    constexpr unsigned char kBytes[] = {'a',  '<',  0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBE, 0xBF, 0xC0, 0xC1, 0xC2,
                                        0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
    std::mt19937 random(1);
    constexpr int kTexts = 60'000;
    int valid = 0;
    for (int i = 0; i < kTexts; ++i) {
        std::string text(56 + random() % 76, ' ');
        const std::size_t at = text.size() - random() % 8;
        std::string sequence;
        for (int byte = 0; byte < 4; ++byte) {
            sequence += static_cast<char>(kBytes[random() % std::size(kBytes)]);
        }
        text.insert(at, sequence.substr(0, 1 + random() % 4));
        const auto expected = ExpectedMarks(text);
        valid += expected ? 1 : 0;
        for (const MarkFinder& finder : MarkFindersFor(ThisProcessor())) {
            ASSERT_EQ(MarksOf(text, finder, 64), expected) << finder.name << " " << testing::PrintToString(text);
            ASSERT_EQ(MarksOf(text, finder, 1), expected) << finder.name << " " << testing::PrintToString(text);
        }
    }
    EXPECT_GT(valid, kTexts / 50);
}

TEST(MarkFinder, WritesNoFurtherThanItsSlack)
{
    const std::string text(64, '<');
    for (const MarkFinder& finder : MarkFindersFor(ThisProcessor())) {
        std::vector<std::uint32_t> marks(text.size() + MarkFinder::kSlack + 1, 0);
        marks.back() = 12345;
        EXPECT_EQ(finder.find({text.data(), 0, 64}, marks.data()), marks.data() + 64) << finder.name;
        EXPECT_EQ(marks.back(), 12345u) << finder.name;
    }
}

}  // namespace
}  // namespace AdvXMLParser
