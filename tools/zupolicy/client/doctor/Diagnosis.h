/// What `zupolicy doctor` finds out, step by step.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zupm::tool {

enum class Outcome {
    Ok,
    Note,    ///< worth knowing, and no fault
    Failed,  ///< nothing after it in the same list was tried
};

/// One step: what was checked, and what to do when it failed.
struct Finding {
    std::string step;
    Outcome outcome = Outcome::Ok;
    std::string text;
    std::string advice;
};

/// The steps of one module.
struct ModuleDiagnosis {
    std::string title;
    std::string user;  ///< the same for programs: "zupolicy", "registered"
    std::vector<Finding> findings;
};

struct Diagnosis {
    std::vector<ModuleDiagnosis> modules;
};

/// The step that failed first; null when none did.
[[nodiscard]] const Finding* FirstFailure(const Diagnosis& diagnosis);

/// Checks the module that this tool uses and the one that registered clients get. Loads both: call before anything
/// else creates an object of the component.
[[nodiscard]] Diagnosis Diagnose();

}  // namespace zupm::tool
