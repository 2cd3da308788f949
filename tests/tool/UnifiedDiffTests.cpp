// The unified difference of two texts.
#include "tools/zupolicy/report/UnifiedDiff.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <sstream>

#include "tools/zupolicy/model/LineDiff.h"

namespace zupm::tool {
namespace {

std::string Diff(std::string_view before, std::string_view after, Form form = Form::Visible)
{
    return UnifiedDiff({"a", "b", before, after}, form);
}

/// The new lines, made of the old ones and the runs.
std::string Patched(std::string_view before, std::string_view after)
{
    const auto old = model::LinesOf(before);
    const auto changed = model::LinesOf(after);
    std::string text;
    std::size_t oldAt = 0;
    std::size_t newAt = 0;
    for (const model::LineRun& run : model::CompareLines(old, changed)) {
        for (std::size_t i = 0; i < run.kept; ++i, ++newAt) {
            text += old.at(oldAt++);
        }
        oldAt += run.removed;
        for (std::size_t i = 0; i < run.added; ++i) {
            text += changed.at(newAt++);
        }
    }
    EXPECT_EQ(oldAt, old.size());
    return text;
}

std::string Lines(int count, const char* text = "line ")
{
    std::string lines;
    for (int i = 0; i < count; ++i) {
        lines += text + std::to_string(i) + "\n";
    }
    return lines;
}

TEST(UnifiedDiff, HiddenPartsAreComparedAndNotPrinted)
{
    const std::string_view before = "a\nb=x\ny\nc\n";
    const std::string_view after = "a\nb=z\nc\n";
    EXPECT_EQ(UnifiedDiff({"a", "b", before, after, {{4, 7}}, {{4, 5}}}, Form::Exact),
              "--- a\n+++ b\n@@ -1,3 +1,3 @@\n a\n-b=***\n+b=***\n c\n");
    // A line that did not change may be printed around one that did. The last part reaches to the end.
    EXPECT_EQ(UnifiedDiff({"a", "b", "k=x\n1\nr\ns\n", "k=x\n2\nr\ns\n", {{2, 3}, {6, 10}}, {{2, 3}, {6, 10}}},
                          Form::Visible),
              "--- a\n+++ b\n@@ -1,3 +1,3 @@\n k=***\n-1\n+2\n ***\n\\ No newline at end of file\n");
}

TEST(UnifiedDiff, HunksHaveThreeLinesAroundEachChange)
{
    EXPECT_EQ(Diff("x\n", "x\n"), "");
    EXPECT_EQ(Diff("", "x\n"), "--- a\n+++ b\n@@ -0,0 +1 @@\n+x\n");
    EXPECT_EQ(Diff("x\n", ""), "--- a\n+++ b\n@@ -1 +0,0 @@\n-x\n");
    EXPECT_EQ(Diff("x", "x\n"), "--- a\n+++ b\n@@ -1 +1 @@\n-x\n\\ No newline at end of file\n+x\n");
    EXPECT_EQ(Diff("1\n2\n3\n4\n5\n6\n7\n8\n9\n", "1\n2\n3\n4\nfive\n6\n7\n8\n9\n"),
              "--- a\n+++ b\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n");
    // Six lines between two changes are one hunk, seven are not.
    const std::string six = Diff("a\n1\n2\n3\n4\n5\n6\nb\n", "A\n1\n2\n3\n4\n5\n6\nB\n");
    EXPECT_EQ(six, "--- a\n+++ b\n@@ -1,8 +1,8 @@\n-a\n+A\n 1\n 2\n 3\n 4\n 5\n 6\n-b\n+B\n");
    const std::string seven = Diff("a\n1\n2\n3\n4\n5\n6\n7\nb\n", "A\n1\n2\n3\n4\n5\n6\n7\nB\n");
    EXPECT_EQ(seven, "--- a\n+++ b\n@@ -1,4 +1,4 @@\n-a\n+A\n 1\n 2\n 3\n@@ -6,4 +6,4 @@\n 5\n 6\n 7\n-b\n+B\n");
}

TEST(UnifiedDiff, WhatCouldDisturbATerminal_IsEscapedForPeopleOnly)
{
    EXPECT_EQ(Diff("", "\x1b[2J\t\xE2\x80\xAE\\ \xFF\r\n"),
              "--- a\n+++ b\n@@ -0,0 +1 @@\n+\\u001b[2J\t\\u202e\\ \\xff\n");
    EXPECT_EQ(Diff("", "\x1b[2J\xFF\r\n", Form::Exact), "--- a\n+++ b\n@@ -0,0 +1 @@\n+\x1b[2J\xFF\r\n");
    EXPECT_EQ(UnifiedDiff({"a\n", "b", "", "x\n"}, Form::Exact), "--- a\\n\n+++ b\n@@ -0,0 +1 @@\n+x\n");
}

TEST(UnifiedDiff, Colours_AreAroundWholeLines)
{
    std::ostringstream out;
    WriteDiff(out, Diff("a\nb\n", "a\nc\n"), true);
    EXPECT_EQ(out.str(),
              "\x1b[1m--- a\x1b[0m\n\x1b[1m+++ b\x1b[0m\n\x1b[36m@@ -1,2 +1,2 @@\x1b[0m\n a\n\x1b[31m-b\x1b[0m\n"
              "\x1b[32m+c\x1b[0m\n");
    std::ostringstream plain;
    WriteDiff(plain, "-b\n", false);
    EXPECT_EQ(plain.str(), "-b\n");
}

TEST(UnifiedDiff, Runs_LeadFromAnyTextToAnyOther)
{
    std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same texts each time
    for (int i = 0; i < 300; ++i) {
        const auto text = [&](std::size_t most) {
            std::string lines;
            for (std::size_t count = random() % most; count > 0; --count) {
                lines += static_cast<char>('a' + random() % (static_cast<unsigned>(i) % 20 + 1));
                lines += random() % 9 == 0 ? "" : "\n";
            }
            return lines;
        };
        // Small ones, and some beyond what the library gets.
        const std::size_t most = i % 30 == 0 ? 9000 : 40;
        const std::string before = text(most);
        const std::string after = text(most);
        ASSERT_EQ(Patched(before, after), after);
    }
}

TEST(UnifiedDiff, AnEntryThatMoves_IsShownAlone)
{
    const std::string head = Lines(20000, "head ");
    const std::string tail = Lines(20000, "tail ");
    const std::string moved = Diff("entry\nvalue 1\n" + head + tail, head + tail + "entry\nvalue 2\n");
    EXPECT_EQ(moved,
              "--- a\n+++ b\n@@ -1,5 +1,3 @@\n-entry\n-value 1\n head 0\n head 1\n head 2\n"
              "@@ -40000,3 +39998,5 @@\n tail 19997\n tail 19998\n tail 19999\n+entry\n+value 2\n");
}

TEST(UnifiedDiff, LargeTexts_TakeNoLongTime)
{
    const std::string large = Lines(100'000, "<Setting name=\"a\">some value</Setting> ");
    ASSERT_GT(large.size(), std::size_t{4} << 20u);
    std::string repeated;
    for (int i = 0; i < 75'000; ++i) {
        repeated += i % 3 == 0 ? "a\n" : "b\n";
    }
    std::string other;
    for (int i = 0; i < 75'000; ++i) {
        other += i % 7 == 0 ? "a\n" : "b\n";
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Diff(large + "x\n", "y\n" + large).size(), Diff(large + "x\n", "z\n" + large).size());
    EXPECT_EQ(Patched(repeated, other), other);
    EXPECT_EQ(Patched(large, repeated), repeated);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

}  // namespace
}  // namespace zupm::tool
