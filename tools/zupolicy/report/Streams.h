/// Where the tool writes.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string_view>

namespace zupm::tool {

/// What standard error is.
struct Console {
    bool isTerminal = false;  ///< a person reads it, and may see lines of the file
    bool hasColour = false;
};

/// The messages of a run, line by line. The only way for a text to reach standard error, so a text from an argument, a
/// file or an error of the system cannot disturb the terminal or pass for a line of the tool.
class Messages {
public:
    Messages(std::ostream& stream, Console console) : m_stream(stream), m_console(console) {}

    /// Writes one line, and escapes what cannot be part of one.
    void Line(std::string_view text);
    /// Writes "zupolicy: " and the text.
    void Complain(std::string_view text);

    [[nodiscard]] bool IsTerminal() const noexcept { return m_console.isTerminal; }

    /// Shows a text, which is not escaped, on a line that the next status replaces. For terminals only.
    void Status(std::string_view text);
    /// Takes the status away; every Line does so first.
    void ClearStatus();

private:
    std::ostream& m_stream;
    Console m_console;
    std::size_t m_statusLength = 0;
};

/// The two streams of a run: the results, and the messages.
struct Streams {
    std::ostream& data;
    Messages& messages;
};

}  // namespace zupm::tool
