/// FILE "-": standard input, for the commands that read.
#pragma once

#include <string>
#include <string_view>

#include "tools/zupolicy/client/Files.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {

/// A file of this name is ./-
inline constexpr std::string_view kStandardInput = "-";

/// A copy of standard input, because the component reads files by name.
class StandardInput {
public:
    /// Reads to the end. Throws ProblemFailure, also when standard input was read before.
    StandardInput();

    [[nodiscard]] const std::string& Path() const noexcept { return m_path; }
    /// The problem with "-" in place of the copy's path.
    [[nodiscard]] ProblemFailure Named(Problem problem) const;

private:
    ScratchFile m_file;
    std::string m_path;
};

/// Throws ProblemFailure (Usage) for "-".
void RequireReplaceable(const std::string& path);

/// Calls `call` with the path that is to be read: the given one, or that of a copy of standard input. What fails then
/// is a ProblemFailure about "-".
template <typename Call>
auto Reading(const std::string& path, const Call& call)
{
    if (path != kStandardInput) {
        return call(path);
    }
    const StandardInput input;
    try {
        return call(input.Path());
    } catch (const ProblemFailure& failure) {
        throw input.Named(failure.What());
    } catch (const Error& error) {
        throw input.Named(ProblemOf(error, {input.Path(), {}}));
    }
}

}  // namespace zupm::tool
