/// Texts in the language of manual pages.
#pragma once

#include <string>
#include <string_view>

namespace zupm::tool {

/// The text with everything escaped that the language would take for something else: backslashes, dashes (which would
/// become hyphens), quotes and accents. Line breaks stay.
[[nodiscard]] std::string Roff(std::string_view text);

/// Writes a page line by line.
///
/// Invariant No line begins with a dot or an apostrophe unless it is a request.
class RoffPage {
public:
    void Request(std::string_view request);
    /// A heading: `kind` is "SH" or "SS".
    void Heading(std::string_view kind, std::string_view title);
    /// A paragraph of plain text, broken into short lines.
    void Text(std::string_view text);
    /// A paragraph of text that is escaped already.
    void Escaped(std::string_view text);
    /// An item of a list: a term, which is escaped already, and its text.
    void Item(std::string_view term, std::string_view text);
    /// Lines that keep their ends and their blanks.
    void Example(std::string_view lines);

    [[nodiscard]] const std::string& Source() const noexcept { return m_source; }

private:
    void Line(std::string_view line);

    std::string m_source;
};

}  // namespace zupm::tool
