/// Differences between two texts, as `diff -u` prints them.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tools/zupolicy/report/Redaction.h"

namespace zupm::tool {

/// Names and texts of both sides; UTF-8, and what is not is kept or escaped as Form says. Hidden parts are compared as
/// they are, and printed as kHidden. Each is a part of one line, whatever line breaks it has.
struct TwoTexts {
    std::string_view oldName;
    std::string_view newName;
    std::string_view before;
    std::string_view after;
    std::vector<TextPart> hiddenBefore = {};
    std::vector<TextPart> hiddenAfter = {};
};

enum class Form {
    Exact,    ///< for programs: lines as they are, with their line ends
    Visible,  ///< for people: escaped as messages are, except tabs; without the line ends of the files
};

/// The unified difference; empty for equal texts. Throws std::bad_alloc.
[[nodiscard]] std::string UnifiedDiff(const TwoTexts& texts, Form form);

/// Writes a difference in the form Visible, with colours when they are wanted.
void WriteDiff(std::ostream& out, std::string_view diff, bool hasColour);

}  // namespace zupm::tool
