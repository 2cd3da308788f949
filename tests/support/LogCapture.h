/// What the component logs while a test looks.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace zupm::test {

struct LogLine {
    std::int32_t level;
    std::string text;
    std::uint32_t subsystem = 0x800;

    friend bool operator==(const LogLine&, const LogLine&) = default;
};

/// For gtest messages.
void PrintTo(const LogLine& line, std::ostream* out);

/// Collects every message from its construction to its destruction. One at a time.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// The messages so far, oldest first, and forgets them.
    [[nodiscard]] std::vector<LogLine> Take();

private:
    std::mutex m_lock;
    std::vector<LogLine> m_lines;
};

}  // namespace zupm::test
