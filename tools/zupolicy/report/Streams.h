/// Where the tool writes.
#pragma once

#include <iosfwd>
#include <string_view>

namespace zupm::tool {

/// What is said about a run, line by line. The one way for a text to reach standard error, so whatever stood in an
/// argument, a file or an error of the system cannot disturb the terminal or pass for a line of the tool.
class Messages {
public:
    explicit Messages(std::ostream& stream) : m_stream(stream) {}

    /// Writes one line; what could be no part of one is escaped.
    void Line(std::string_view text);

private:
    std::ostream& m_stream;
};

/// The two streams of a run: what was asked for, and what is said about it.
struct Streams {
    std::ostream& data;
    Messages& messages;
};

}  // namespace zupm::tool
