/// A command line of Bash that is being typed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zupm::tool {

/// Takes a line apart as Bash does, without running or expanding anything in it: a "$(...)" is text.
class BashLine {
public:
    /// The line up to the cursor; it begins with the name of the program. At the characters of `breaks` Bash begins a
    /// new word to complete, although the argument goes on.
    BashLine(std::string_view line, std::string_view breaks);

    /// The arguments before the one at the cursor, without quotes.
    [[nodiscard]] const std::vector<std::string>& Words() const noexcept { return m_words; }
    /// The argument at the cursor, up to the cursor.
    [[nodiscard]] const std::string& Current() const noexcept { return m_current; }

    /// What takes the place of Bash's word so that the argument at the cursor becomes `argument`, with quotes or
    /// backslashes as the place asks for. Nothing when the line cannot hold that.
    [[nodiscard]] std::optional<std::string> ReplacementBy(std::string_view argument) const;

private:
    void Take(char character, std::string_view breaks);
    void TakeUnquoted(char character, std::string_view breaks);
    void EndWord();

    std::vector<std::string> m_words;
    std::string m_current;
    std::size_t m_kept = 0;  ///< how much of `m_current` stays: it is before Bash's word
    std::size_t m_keptBeforeQuote = 0;
    char m_quote = '\0';       ///< the quote that is open
    bool m_isEscaped = false;  ///< the last character was a backslash
    bool m_isInWord = false;
};

}  // namespace zupm::tool
