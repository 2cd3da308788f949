/// What `apply` prints.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/Problem.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// What became of one file.
struct ApplyResult {
    enum class State {
        Changed,    ///< in a dry run: would change
        Unchanged,  ///< it was as the edits want it, and was not written
        Failed,     ///< it is as it was
        NotDone,    ///< not begun, because another file failed or the run was interrupted
    };

    std::string file;
    State state = State::NotDone;
    std::size_t edits = 0;  ///< those that made a difference
    std::optional<std::string> backup;
    std::string differences;         ///< in a dry run: lines for people
    std::optional<Problem> problem;  ///< also of a file that was changed: it could not be flushed
};

/// Prints results as they come, and counts them.
class ApplyReport {
public:
    ApplyReport(Streams streams, bool isJson, bool isDryRun);

    void Add(const ApplyResult& result);
    void End();

    /// Whether a file was written.
    [[nodiscard]] bool HasWritten() const noexcept { return !m_isDryRun && m_changed != 0; }
    /// That of the first file that failed; Written only when nothing else did.
    [[nodiscard]] ExitCode Code() const noexcept { return m_code; }

private:
    void AddText(const ApplyResult& result);
    void AddJson(const ApplyResult& result);
    void EndJson();

    Streams m_streams;
    bool m_isJson;
    bool m_isDryRun;
    JsonWriter m_json;
    ExitCode m_code = ExitCode::Ok;
    std::uint64_t m_changed = 0;
    std::uint64_t m_unchanged = 0;
    std::uint64_t m_failed = 0;
    std::uint64_t m_notDone = 0;
};

}  // namespace zupm::tool
