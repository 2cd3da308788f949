/// What `apply` and `import` print.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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
    std::string diff;                ///< the difference of the texts, when it is wanted
    std::optional<Problem> problem;  ///< also of a file that was changed: it could not be flushed
    std::vector<std::string> notes;  ///< what else to say about it, line by line
};

/// How results are printed.
struct ApplyForm {
    bool isJson = false;
    bool isDryRun = false;
    bool isQuiet = false;     ///< only differences that are wanted, and failures
    bool isVerbose = false;   ///< each file also as a message, next to JSON
    bool hasDiff = false;     ///< the difference of the texts in place of the lines of a dry run
    bool hasColour = false;   ///< in that difference
    bool countsEdits = true;  ///< with the number of edits
};

/// Prints results as they come, and counts them.
class ApplyReport {
public:
    ApplyReport(Streams streams, ApplyForm form);

    void Add(const ApplyResult& result);
    void End();

    /// Whether a file was written.
    [[nodiscard]] bool HasWritten() const noexcept { return !m_form.isDryRun && m_changed != 0; }
    /// That of the first file that failed; Written only when nothing else did.
    [[nodiscard]] ExitCode Code() const noexcept { return m_code; }

private:
    void AddMessages(const ApplyResult& result);
    void AddText(const ApplyResult& result);
    void AddLine(const ApplyResult& result);
    void AddJson(const ApplyResult& result);
    void EndJson();

    Streams m_streams;
    ApplyForm m_form;
    JsonWriter m_json;
    ExitCode m_code = ExitCode::Ok;
    std::uint64_t m_changed = 0;
    std::uint64_t m_unchanged = 0;
    std::uint64_t m_failed = 0;
    std::uint64_t m_notDone = 0;
};

}  // namespace zupm::tool
