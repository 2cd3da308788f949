#include "tests/support/Difference.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/support/Bstr.h"

namespace zupm::test {

namespace {

using Lines = std::vector<std::string_view>;

Lines SplitLines(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

std::string Visible(std::string_view line)
{
    const bool ended = line.ends_with('\n');
    std::string shown;
    for (const char c : line.substr(0, line.size() - (ended ? 1 : 0))) {
        constexpr std::string_view kDigits = "0123456789abcdef";
        if (c == '\r') {
            shown += "\\r";
        } else if (c == '\t') {
            shown += "\\t";
        } else if (const auto byte = static_cast<unsigned char>(c); byte < 0x20) {
            shown.append("\\x").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 0xF]);
        } else {
            shown += c;
        }
    }
    return ended ? shown : shown + "\\(no line end)";
}

/// Removes the lines that both begin with, and those that both end with; what is left keeps the table below small.
/// Returns the latter.
Lines DropCommonEnds(Lines& before, Lines& after)
{
    const auto [first, second] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    before.erase(before.begin(), first);
    after.erase(after.begin(), second);
    Lines common;
    while (!before.empty() && !after.empty() && before.back() == after.back()) {
        common.push_back(before.back());
        before.pop_back();
        after.pop_back();
    }
    std::reverse(common.begin(), common.end());
    return common;
}

/// length[i][j]: the longest common subsequence of the lines from i on and from j on.
std::vector<std::vector<std::size_t>> CommonLengths(const Lines& before, const Lines& after)
{
    std::vector length(before.size() + 1, std::vector<std::size_t>(after.size() + 1, 0));
    for (std::size_t i = before.size(); i-- > 0;) {
        for (std::size_t j = after.size(); j-- > 0;) {
            length[i][j] =
                before[i] == after[j] ? length[i + 1][j + 1] + 1 : std::max(length[i + 1][j], length[i][j + 1]);
        }
    }
    return length;
}

/// One line of both texts (' '), of the old one ('-') or of the new one ('+').
struct Step {
    char sign;
    std::string_view line;
};

std::vector<Step> StepsBetween(const Lines& before, const Lines& after)
{
    const auto length = CommonLengths(before, after);
    std::vector<Step> steps;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < before.size() || j < after.size()) {
        if (i < before.size() && j < after.size() && before[i] == after[j]) {
            steps.push_back({' ', before[i++]});
            ++j;
        } else if (j == after.size() || (i < before.size() && length[i + 1][j] >= length[i][j + 1])) {
            steps.push_back({'-', before[i++]});
        } else {
            steps.push_back({'+', after[j++]});
        }
    }
    return steps;
}

/// Of a block that repeats the block before it, the later one counts as added or removed: a run of changed lines moves
/// down while the line after it is the same as its first.
void SlideDown(std::vector<Step>& steps)
{
    for (std::size_t first = 0; first < steps.size(); ++first) {
        if (steps[first].sign == ' ' || (first > 0 && steps[first - 1].sign == steps[first].sign)) {
            continue;
        }
        std::size_t end = first + 1;
        while (end < steps.size() && steps[end].sign == steps[first].sign) {
            ++end;
        }
        if (end < steps.size() && steps[end].sign == ' ' && steps[end].line == steps[first].line) {
            std::swap(steps[first].sign, steps[end].sign);
        }
    }
}

}  // namespace

std::string Difference(std::string_view before, std::string_view after)
{
    Lines old = SplitLines(before);
    Lines now = SplitLines(after);
    const Lines ending = DropCommonEnds(old, now);
    std::vector<Step> steps = StepsBetween(old, now);
    for (const std::string_view line : ending) {
        steps.push_back({' ', line});
    }
    SlideDown(steps);
    std::string result;
    for (const Step& step : steps) {
        if (step.sign != ' ') {
            result.append(1, step.sign).append(" ").append(Visible(step.line)).append("\n");
        }
    }
    return result;
}

std::string Difference(std::u16string_view before, std::u16string_view after)
{
    return Difference(Utf8(before), Utf8(after));
}

}  // namespace zupm::test
