/// What `check` says to people and editors.
#pragma once

#include "tools/zupolicy/report/CheckReport.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// "file:line:column: message" for a broken file, one "file:line:column: warning: message" for each warning about a
/// sound one; nothing else for a sound file.
void PrintReport(Messages& messages, const CheckReport& report);

/// "file:line:column: warning: message".
void PrintWarning(Messages& messages, const std::string& file, const FileContents& contents, const Warning& warning);

/// "file: ok: 3 policies, ...". The file is sound.
void PrintCounts(Messages& messages, const CheckReport& report);

}  // namespace zupm::tool
