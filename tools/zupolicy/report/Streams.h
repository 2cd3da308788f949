/// Where the tool writes.
#pragma once

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

private:
    std::ostream& m_stream;
};

/// The two streams of a run: the results, and the messages.
struct Streams {
    std::ostream& data;
    Messages& messages;
};

}  // namespace zupm::tool
