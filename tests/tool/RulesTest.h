/// Base of the tests of rules.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ToolTest.h"

namespace zupm::test {

/// Rules go through a file, rules.json.
class RulesTest : public ToolTest {
protected:
    /// Checks small.xml against rules.
    [[nodiscard]] ToolRun Against(std::string_view rules, const std::vector<std::string>& more = {}) const
    {
        Folder().Write(u"rules.json", rules);
        std::vector<std::string> arguments = {"check", "--rules", "rules.json", "small.xml"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Tool(arguments);
    }
};

}  // namespace zupm::test
