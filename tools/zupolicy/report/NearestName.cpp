#include "tools/zupolicy/report/NearestName.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

constexpr std::size_t kMostDistance = 2;
/// Longer names are rarely typed, and the time of a comparison grows with the square of the length.
constexpr std::size_t kLongest = 100;

std::u32string Characters(std::string_view utf8)
{
    std::u32string characters;
    while (!utf8.empty()) {
        const std::optional<char32_t> character = TakeCharacter(utf8);
        if (!character) {
            return {};
        }
        characters.push_back(*character);
    }
    return characters;
}

std::u32string LowerCase(std::u32string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char32_t c) { return c >= U'A' && c <= U'Z' ? c - U'A' + U'a' : c; });
    return text;
}

/// How many characters must be inserted, removed or replaced to turn one text into the other. Neither has more than
/// kLongest characters.
std::size_t EditDistance(std::u32string_view a, std::u32string_view b)
{
    std::array<std::size_t, kLongest + 1> row{};
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

}  // namespace

NearestName::NearestName(std::string_view wanted)
    : m_wanted(wanted.size() > kLongest ? std::u32string() : Characters(wanted)), m_distance(kMostDistance + 1)
{
    m_distance = std::min(m_distance, m_wanted.size());
}

void NearestName::Offer(std::string_view name)
{
    if (name.size() > kLongest || m_distance == 0) {
        return;
    }
    const std::u32string other = Characters(name);
    const auto [shorter, longer] = std::minmax({m_wanted.size(), other.size()});
    if (longer - shorter > kMostDistance || shorter == 0) {
        return;
    }
    const std::size_t distance = LowerCase(m_wanted) == LowerCase(other) ? 0 : EditDistance(m_wanted, other);
    if (distance < m_distance && distance < shorter) {
        m_distance = distance;
        m_best = name;
    }
}

std::string NearestName::Suggestion() const
{
    return m_best ? "did you mean " + Quoted(*m_best) + "?" : std::string();
}

}  // namespace zupm::tool
