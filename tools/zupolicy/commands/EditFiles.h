/// Edits in many files: what `apply` and `import` have in common.
#pragma once

#include <string>
#include <vector>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/model/EditRequest.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

struct FilesOptions : WriteOptions {
    std::vector<std::string> files;
    bool keepGoing = false;
    unsigned jobs = 1;
};

/// Declares everything but FILE.
void AddFiles(CLI::App& line, FilesOptions& options);

/// The edits, and the name that messages have for where they come from.
struct Edits {
    std::string name;
    std::vector<model::EditRequest> requests;
    bool areCounted = true;  ///< the report has the number of edits that made a difference
};

/// Makes the edits in each file and reports each. Throws Failure: Written when the report cannot be printed; Other when
/// the run was interrupted.
[[nodiscard]] ExitCode EditFiles(const FilesOptions& options, Edits edits, Streams streams);

}  // namespace zupm::tool
