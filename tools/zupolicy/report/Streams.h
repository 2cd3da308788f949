/// Where the tool writes.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string_view>

namespace zupm::tool {

/// The messages of a run, line by line. The only way for a text to reach standard error, so a text from an argument, a
/// file or an error of the system cannot disturb the terminal or pass for a line of the tool.
class Messages {
public:
    explicit Messages(std::ostream& stream) : m_stream(stream) {}

    /// Writes one line, and escapes what cannot be part of one.
    void Line(std::string_view text);

    /// Shows a text, which is not escaped, on a line that the next status replaces. For terminals only.
    void Status(std::string_view text);
    /// Takes the status away; every Line does so first.
    void ClearStatus();

private:
    std::ostream& m_stream;
    std::size_t m_statusLength = 0;
};

/// The two streams of a run: the results, and the messages.
struct Streams {
    std::ostream& data;
    Messages& messages;
};

}  // namespace zupm::tool
