#include "tools/zupolicy/commands/RedactOption.h"

#include <CLI/CLI.hpp>

#include <vector>

#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {

void AddRedact(CLI::App& line, Redaction& hidden)
{
    const auto take = [&hidden](const std::vector<std::string>& patterns) { hidden = Redaction(patterns); };
    const auto complaint = [](const std::string& pattern) {
        return pattern.empty() ? std::string("the pattern is empty, and would hide nothing") : std::string();
    };
    line.add_option_function<std::vector<std::string>>(
            "--redact", take, "Print *** in place of the values of these settings (NAME or SECTION/NAME)")
        ->type_name("PATTERN")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(complaint, "");
}

ExitCode Hiding(const Redaction& hidden, Streams streams, const std::function<ExitCode()>& run, bool isQuiet)
{
    const ExitCode code = run();
    if (isQuiet) {
        return code;
    }
    for (const std::string& pattern : hidden.Unused()) {
        streams.messages.Complain("--redact " + Quoted(pattern) + " hides nothing");
    }
    return code;
}

std::string ComplaintToShow(const std::string& message, const Redaction& hidden)
{
    return hidden.IsEmpty() ? message : message.substr(0, message.find("; last read: "));
}

}  // namespace zupm::tool
