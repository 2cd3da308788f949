/// Failures with what the component does not report: names, and similar names that exist.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/zupolicy/client/Target.h"
#include "tools/zupolicy/client/contents/FileContents.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {

/// What a call was about. Without a section it is the policy or task itself.
struct Sought {
    std::string file;
    Target target;
    std::optional<std::string> section;
    std::optional<std::string> name;
};

/// The problem with the section and the setting that are missing, and the element that an entry needs and the file does
/// not have. Any other problem stays as it is.
[[nodiscard]] Problem Explained(Problem problem, const Sought& sought);

/// `did you mean "General"?` when something is missing and the file has a name much like it, and that an ID is empty;
/// nothing otherwise.
[[nodiscard]] std::string SuggestionFor(result::Code code, const Sought& sought);

/// What an empty ID means: nothing else explains why it is not found. Nothing for IDs that are not empty.
[[nodiscard]] std::string ComplaintOfIds(const std::string& softwareId, const std::optional<std::string>& taskId);

/// The first element on the way to a new entry that a file does not have; empty when it has all.
[[nodiscard]] std::string_view MissingElement(const Places& places, const Target& target);

/// Calls `call`; a ProblemFailure leaves it explained, with a suggestion as its hint.
template <typename Call>
decltype(auto) Explaining(const Sought& sought, Call call)
{
    try {
        return call();
    } catch (const ProblemFailure& failure) {
        if (failure.Code() == ExitCode::NotFound && failure.What().code) {
            Problem problem = Explained(failure.What(), sought);
            problem.hint = SuggestionFor(*problem.code, sought);
            throw ProblemFailure(problem);
        }
        if (failure.What().code == result::ElementMissing) {
            throw ProblemFailure(Explained(failure.What(), sought));
        }
        throw;
    }
}

}  // namespace zupm::tool
