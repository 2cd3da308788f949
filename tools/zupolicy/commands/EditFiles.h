/// Edits in many files: what `apply` and `import` have in common.
#pragma once

#include <string>
#include <vector>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/commands/Input.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/EditRequest.h"
#include "tools/zupolicy/model/ReadEdits.h"
#include "tools/zupolicy/report/Problem.h"
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

/// Calls `read` with the text of an input; its complaints leave it as ProblemFailure. `what` names the input in
/// messages.
template <class Read>
auto ReadingInput(const std::string& name, const std::string& what, const Redaction& hidden, const Read& read)
{
    try {
        return read(ReadInput(name, what));
    } catch (const model::EditsComplaint& complaint) {
        throw ProblemFailure({result::SyntaxError,
                              ExitCode::FileError,
                              name,
                              complaint.place.line,
                              complaint.place.column,
                              ComplaintToShow(complaint.message, hidden),
                              {}});
    }
}

/// Makes the edits in each file and reports each. Throws Failure: Written when the report cannot be printed; Other when
/// the run was interrupted.
[[nodiscard]] ExitCode EditFiles(const FilesOptions& options, Edits edits, Streams streams);

}  // namespace zupm::tool
