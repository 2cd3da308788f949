/// Many edits in one file, as one write.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/model/EditRequest.h"
#include "tools/zupolicy/report/ApplyReport.h"
#include "tools/zupolicy/report/Redaction.h"
#include "tools/zupolicy/report/UnifiedDiff.h"

namespace zupm::tool {

/// What is done to each file.
struct ApplyTask {
    std::string editsName;  ///< for messages
    std::vector<model::EditRequest> edits;
    std::optional<std::string> backupSuffix;
    bool dryRun = false;
    bool force = false;
    std::optional<Form> diff;  ///< the form of the differences of texts that are wanted
    std::chrono::milliseconds patience{};
    Redaction redaction;
};

/// Makes all edits in a file, or none: a file that is not reported as changed has the bytes that it had. A failure is
/// part of the result. Call it on a thread with a Runtime.
[[nodiscard]] ApplyResult ApplyToFile(const std::string& file, const ApplyTask& task);

}  // namespace zupm::tool
