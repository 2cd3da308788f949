#include "tools/zupolicy/commands/RedactOption.h"

#include <CLI/CLI.hpp>

namespace zupm::tool {

void AddRedact(CLI::App& line, std::vector<std::string>& patterns)
{
    line.add_option("--redact", patterns, "Print *** in place of the values of these settings (NAME or SECTION/NAME)")
        ->type_name("PATTERN")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

std::string ComplaintToShow(const std::string& message, const std::vector<std::string>& patterns)
{
    return patterns.empty() ? message : message.substr(0, message.find("; last read: "));
}

}  // namespace zupm::tool
