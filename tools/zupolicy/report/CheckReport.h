/// What `check` finds out about a file, and how it prints that.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/client/Notices.h"
#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/report/Problem.h"
#include "tools/zupolicy/report/RuleReport.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// What there is to say about a file that loads.
struct SoundFile {
    Notices notices;
    Counts counts;  ///< 0 where nobody asks for them
    /// What breaks the rules; nothing without rules.
    std::optional<std::vector<RuleProblem>> problems;
};

/// A broken file has a problem, with a place where the breakage has one.
struct CheckReport {
    std::string file;
    std::optional<SoundFile> sound;
    Problem problem;
};

/// "file:line:column: message" for a broken file, one "file:line:column: warning: message" for each warning about a
/// sound one, and a line for each part of it that breaks a rule; nothing else for a sound file.
void PrintReport(Messages& messages, const CheckReport& report);

/// "file:line:column: warning: message".
void PrintWarning(Messages& messages, const std::string& file, const Notice& notice);

/// "file: ok: 3 policies, ...". The file is sound.
void PrintCounts(Messages& messages, const CheckReport& report);

}  // namespace zupm::tool
