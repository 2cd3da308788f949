/// What the completion scripts of the shells ask: a hidden command.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zupm::tool {

inline constexpr std::string_view kCompleteCommand = "__complete";

/// Answers the arguments after the command's name:
///
///   words COUNT WORD...      the words before the one at the cursor, COUNT of them, then that one up to the cursor; it
///                            may be missing when it is empty. A candidate is a whole word, not quoted.
///   line LINE BREAKS         the command line up to the cursor, and the characters at which Bash begins a new word. A
///                            candidate is quoted, and is what takes the place of Bash's word.
///
/// Each candidate is a line: the text, a tab, and a description, which may be empty. A line without a text says that
/// files are to be completed. Whatever goes wrong, nothing is printed: a message would be in the way of the person
/// who types.
[[nodiscard]] std::string CompletionFor(const std::vector<std::string>& arguments) noexcept;

}  // namespace zupm::tool
