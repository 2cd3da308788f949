/// What `watch` prints.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "tools/zupolicy/model/FileState.h"
#include "tools/zupolicy/report/Problem.h"
#include "tools/zupolicy/report/Redaction.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// Prints changes line by line, and each line at once: a reader at the other end of a pipe waits for it.
class WatchReport {
public:
    /// With `most` it prints no more changes than these.
    WatchReport(Streams streams, bool isJson, Redaction redaction, std::optional<std::uint64_t> most);

    void Changed(const std::string& file, const model::FileState& before, const model::FileState& after);
    /// The file cannot be read any more.
    void Broken(const std::string& file, const Problem& problem);
    /// The file can be read again.
    void Sound(const std::string& file);

    [[nodiscard]] std::uint64_t Changes() const noexcept { return m_changes; }
    /// Whether there is nothing more to print, or nowhere to print it.
    [[nodiscard]] bool IsOver() const { return !m_streams.data || (m_most && m_changes >= *m_most); }

private:
    void WriteLines(const std::string& lines);

    Streams m_streams;
    bool m_isJson;
    Redaction m_redaction;
    std::optional<std::uint64_t> m_most;
    std::uint64_t m_changes = 0;
};

}  // namespace zupm::tool
