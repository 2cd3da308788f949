/// Which lines of a text become which lines of another.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace zupm::model {

/// The lines of a text, each with the line feed that ends it; only the last one may have none. They refer to the text.
[[nodiscard]] std::vector<std::string_view> LinesOf(std::string_view text);

/// A run of lines: `kept` lines that both texts have, then `removed` lines of the old text and `added` lines of the
/// new one in their place.
struct LineRun {
    std::size_t kept = 0;
    std::size_t removed = 0;
    std::size_t added = 0;
};

/// The runs that lead from the old lines to the new ones, from the first line to the last. The time and memory grow
/// with the number of lines and not faster, whatever the lines are: a large part in which no line occurs once in both
/// texts is replaced as a whole. Throws std::bad_alloc.
[[nodiscard]] std::vector<LineRun> CompareLines(const std::vector<std::string_view>& before,
                                                const std::vector<std::string_view>& after);

}  // namespace zupm::model
