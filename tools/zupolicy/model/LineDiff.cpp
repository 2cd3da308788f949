#include "tools/zupolicy/model/LineDiff.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <dtl/dtl.hpp>
#include <span>
#include <unordered_map>
#include <utility>

namespace zupm::model {
namespace {

/// A line as a number: equal lines have the same one.
using Number = std::uint32_t;
using Numbers = std::span<const Number>;

/// The library's time and memory grow with the square of the lines that differ. It gets no more lines at a time.
constexpr std::size_t kMostLines = 4096;

/// Collects runs, one change after another.
class Runs {
public:
    void Keep(std::size_t lines)
    {
        if (lines != 0 && (m_last.removed != 0 || m_last.added != 0)) {
            m_runs.push_back(std::exchange(m_last, {}));
        }
        m_last.kept += lines;
    }
    void Replace(std::size_t removed, std::size_t added)
    {
        m_last.removed += removed;
        m_last.added += added;
    }
    [[nodiscard]] std::vector<LineRun> Take()
    {
        m_runs.push_back(m_last);
        return std::move(m_runs);
    }

private:
    std::vector<LineRun> m_runs;
    LineRun m_last;
};

/// A line that both parts have once, by its place in each.
struct Anchor {
    std::size_t before;
    std::size_t after;
};

/// The longest list of anchors whose places grow on both sides.
std::vector<Anchor> Ascending(const std::vector<Anchor>& anchors)
{
    // For each length the list that ends earliest, by the index of its last anchor.
    std::vector<std::size_t> ends;
    std::vector<std::size_t> previous(anchors.size());
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        const auto place = std::ranges::lower_bound(ends, anchors[i].after, {},
                                                    [&](std::size_t index) { return anchors[index].after; });
        previous[i] = place == ends.begin() ? i : *(place - 1);
        if (place == ends.end()) {
            ends.push_back(i);
        } else {
            *place = i;
        }
    }
    std::vector<Anchor> list(ends.size());
    std::size_t at = ends.empty() ? 0 : ends.back();
    for (std::size_t i = list.size(); i-- > 0; at = previous[at]) {
        list[i] = anchors[at];
    }
    return list;
}

std::vector<Anchor> AnchorsOf(Numbers before, Numbers after)
{
    struct Places {
        std::size_t countBefore = 0;
        std::size_t countAfter = 0;
        std::size_t inAfter = 0;
    };
    std::unordered_map<Number, Places> places;
    for (const Number number : before) {
        ++places[number].countBefore;
    }
    for (std::size_t i = 0; i < after.size(); ++i) {
        Places& place = places[after[i]];
        ++place.countAfter;
        place.inAfter = i;
    }
    std::vector<Anchor> anchors;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const Places& place = places[before[i]];
        if (place.countBefore == 1 && place.countAfter == 1) {
            anchors.push_back({i, place.inAfter});
        }
    }
    return Ascending(anchors);
}

void CompareSmall(Numbers before, Numbers after, Runs& runs)
{
    dtl::Diff<Number> diff({before.begin(), before.end()}, {after.begin(), after.end()});
    diff.compose();
    for (const auto& [number, step] : diff.getSes().getSequence()) {
        switch (step.type) {
            case dtl::SES_COMMON:
                runs.Keep(1);
                break;
            case dtl::SES_DELETE:
                runs.Replace(1, 0);
                break;
            default:
                runs.Replace(0, 1);
        }
    }
}

std::size_t CommonHead(Numbers before, Numbers after)
{
    const auto [end, ignored] = std::ranges::mismatch(before, after);
    return static_cast<std::size_t>(end - before.begin());
}

std::size_t CommonTail(Numbers before, Numbers after)
{
    const std::size_t most = std::min(before.size(), after.size());
    std::size_t tail = 0;
    while (tail < most && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) {
        ++tail;
    }
    return tail;
}

/// Compares what lies between lines that are equal; `mayDivide` is false within a division.
void CompareMiddle(Numbers before, Numbers after, Runs& runs, bool mayDivide);

/// Compares without the lines that are equal at both ends.
void ComparePart(Numbers before, Numbers after, Runs& runs, bool mayDivide)
{
    const std::size_t head = CommonHead(before, after);
    before = before.subspan(head);
    after = after.subspan(head);
    const std::size_t tail = CommonTail(before, after);
    runs.Keep(head);
    CompareMiddle(before.first(before.size() - tail), after.first(after.size() - tail), runs, mayDivide);
    runs.Keep(tail);
}

void CompareMiddle(Numbers before, Numbers after, Runs& runs, bool mayDivide)
{
    if (before.empty() || after.empty() || (!mayDivide && before.size() + after.size() > kMostLines)) {
        runs.Replace(before.size(), after.size());
        return;
    }
    if (before.size() + after.size() <= kMostLines) {
        CompareSmall(before, after, runs);
        return;
    }
    std::size_t doneBefore = 0;
    std::size_t doneAfter = 0;
    for (const Anchor& anchor : AnchorsOf(before, after)) {
        ComparePart(before.subspan(doneBefore, anchor.before - doneBefore),
                    after.subspan(doneAfter, anchor.after - doneAfter), runs, false);
        runs.Keep(1);
        doneBefore = anchor.before + 1;
        doneAfter = anchor.after + 1;
    }
    ComparePart(before.subspan(doneBefore), after.subspan(doneAfter), runs, false);
}

std::vector<Number> NumbersOf(const std::vector<std::string_view>& lines,
                              std::unordered_map<std::string_view, Number>& known)
{
    std::vector<Number> numbers;
    numbers.reserve(lines.size());
    for (const std::string_view line : lines) {
        numbers.push_back(known.emplace(line, static_cast<Number>(known.size())).first->second);
    }
    return numbers;
}

}  // namespace

std::vector<std::string_view> LinesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::size_t length = end == text.npos ? text.size() : end + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

std::vector<LineRun> CompareLines(const std::vector<std::string_view>& before,
                                  const std::vector<std::string_view>& after)
{
    std::unordered_map<std::string_view, Number> known;
    const std::vector<Number> old = NumbersOf(before, known);
    const std::vector<Number> changed = NumbersOf(after, known);
    Runs runs;
    ComparePart(old, changed, runs, true);
    return runs.Take();
}

}  // namespace zupm::model
