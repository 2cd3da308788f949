/// The line of a file that an error is about, as a terminal shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/zupolicy/report/Problem.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// A part of a line around a column. What is invisible is escaped, and what is cut off is "...".
struct Excerpt {
    std::string text;
    std::size_t before = 0;  ///< the cells of the terminal that the text takes before the column
};

/// `column` counts characters from 1; the one after the line's last is its end. The text takes about 100 cells.
[[nodiscard]] Excerpt ExcerptOf(std::string_view line, std::size_t column);

/// Prints the line of the file and a caret below the column, when the problem has a place and the messages go to a
/// terminal. A line that cannot be read any more is left out.
void PrintExcerpt(Messages& messages, const Problem& problem);

}  // namespace zupm::tool
