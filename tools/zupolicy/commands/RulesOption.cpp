#include "tools/zupolicy/commands/RulesOption.h"

#include <CLI/CLI.hpp>

#include <algorithm>

#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/rules/ReadRules.h"

namespace zupm::tool {

void AddRules(CLI::App& line, std::optional<std::string>& rules)
{
    line.add_option("--rules", rules, "Also check the files against these rules, a JSON Schema; - for standard input")
        ->type_name("RULES");
}

std::optional<rules::RuleSet> RulesFor(const std::optional<std::string>& rules, const std::vector<std::string>& files)
{
    if (!rules) {
        return std::nullopt;
    }
    if (*rules == kStandardInput && std::ranges::find(files, kStandardInput) != files.end()) {
        throw Failure(ExitCode::Usage, *rules, "standard input can be read only once: as FILE or as the rules");
    }
    return rules::ReadRules(*rules);
}

}  // namespace zupm::tool
