#include "tools/zupolicy/report/Excerpt.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <sstream>

#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/SourceLine.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

/// Cells of the terminal on either side of the column.
constexpr std::size_t kReach = 50;
constexpr std::string_view kCut = "...";

/// Characters that take another number of cells than one.
struct Width {
    char32_t first;
    char32_t last;
    std::size_t cells;
};

constexpr Width kWidths[] = {
    {0x0300, 0x036F, 0},   {0x1100, 0x115F, 2},   {0x20D0, 0x20FF, 0},   {0x2E80, 0x303E, 2},
    {0x3041, 0xA4CF, 2},   {0xA960, 0xA97C, 2},   {0xAC00, 0xD7A3, 2},   {0xF900, 0xFAFF, 2},
    {0xFE00, 0xFE0F, 0},   {0xFE30, 0xFE6F, 2},   {0xFF00, 0xFF60, 2},   {0xFFE0, 0xFFE6, 2},
    {0x1F300, 0x1F64F, 2}, {0x1F680, 0x1F6FF, 2}, {0x1F900, 0x1F9FF, 2}, {0x20000, 0x3FFFD, 2},
};

std::size_t CellsOf(char32_t character)
{
    const auto* const row = std::ranges::find_if(kWidths, [&](const Width& width) { return character <= width.last; });
    return row != std::end(kWidths) && character >= row->first ? row->cells : 1;
}

/// A character as it is printed, or a byte that is no part of one.
struct Cell {
    std::string text;
    std::size_t width;
};

/// Takes one off the front of a text that is not empty.
Cell TakeCell(std::string_view& text)
{
    const std::string_view whole = text;
    const std::optional<char32_t> character = TakeCharacter(text);
    text.remove_prefix(character ? 0 : 1);
    const std::string_view taken = whole.substr(0, whole.size() - text.size());
    std::ostringstream visible;
    WriteVisible(visible, taken, Backslash::Kept);
    const bool isEscaped = visible.view() != taken;
    return {visible.str(), isEscaped ? visible.view().size() : CellsOf(character.value_or(U' '))};
}

void Skip(std::string_view& text)
{
    const bool isCharacter = TakeCharacter(text).has_value();
    text.remove_prefix(isCharacter ? 0 : 1);
}

/// Where the last `count` characters of a text begin.
std::size_t LastCharacters(std::string_view text, std::size_t count)
{
    std::size_t at = text.size();
    for (; count > 0 && at > 0; --count) {
        --at;
        for (int more = 0; more < 3 && at > 0 && (static_cast<std::uint8_t>(text[at]) & 0xC0U) == 0x80; ++more) {
            --at;
        }
    }
    return at;
}

}  // namespace

Excerpt ExcerptOf(std::string_view line, std::size_t column)
{
    std::string_view rest = line;
    for (std::size_t left = column; left > 1 && !rest.empty(); --left) {
        Skip(rest);
    }
    const std::string_view before = line.substr(0, line.size() - rest.size());

    const std::size_t begin = LastCharacters(before, kReach);
    Excerpt excerpt;
    std::vector<Cell> cells;
    for (std::string_view part = before.substr(begin); !part.empty();) {
        cells.push_back(TakeCell(part));
    }
    // An escape is longer than the character, so the part may still be too long.
    std::size_t width = 0;
    auto first = cells.rbegin();
    while (first != cells.rend() && width + first->width <= kReach) {
        width += (first++)->width;
    }
    if (begin > 0 || first != cells.rend()) {
        excerpt.text = kCut;
        excerpt.before = kCut.size();
    }
    for (auto cell = first.base(); cell != cells.end(); ++cell) {
        excerpt.text += cell->text;
        excerpt.before += cell->width;
    }
    for (std::size_t after = 0; !rest.empty();) {
        const Cell cell = TakeCell(rest);
        after += cell.width;
        if (after > kReach) {
            excerpt.text += kCut;
            break;
        }
        excerpt.text += cell.text;
    }
    return excerpt;
}

void PrintExcerpt(Messages& messages, const Problem& problem)
{
    if (!messages.IsTerminal() || problem.line == 0 || problem.file == "-") {
        return;  // standard input cannot be read again
    }
    if (const std::optional<std::string> line = SourceLine(problem.file, problem.line)) {
        const Excerpt excerpt = ExcerptOf(*line, problem.column);
        messages.Line("  " + excerpt.text);
        messages.Line("  " + std::string(excerpt.before, ' ') + "^");
    }
}

}  // namespace zupm::tool
