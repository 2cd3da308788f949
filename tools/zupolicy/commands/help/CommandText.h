/// The commands as data, for whatever describes them: manual pages and completion.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/zupolicy/commands/Commands.h"

namespace zupm::tool {

struct ArgumentText {
    std::string name;
    std::string description;
    bool isRequired = false;
    bool repeats = false;
};

struct OptionText {
    std::vector<std::string> names;  ///< with their dashes, the short one first
    std::string value;               ///< the name of the value; empty for a flag
    std::string range;               ///< which values are taken; may be empty
    std::vector<std::string> choices;
    std::string description;
    std::string group;
    bool isRequired = false;
    bool repeats = false;
    bool valueMayBeMissing = false;   ///< the value can only follow a '='
    std::vector<std::string> others;  ///< the options that it cannot be used with

    [[nodiscard]] bool TakesNextWord() const { return !value.empty() && !valueMayBeMissing; }
    [[nodiscard]] bool Has(std::string_view name) const;
};

struct CommandText {
    std::string name;
    std::string description;
    std::string examples;
    std::vector<ArgumentText> arguments;
    std::vector<OptionText> options;

    /// Null when there is none.
    [[nodiscard]] const OptionText* Find(std::string_view optionName) const;
};

/// What the command declares to the parser of command lines.
[[nodiscard]] CommandText TextOf(const Command& command);

}  // namespace zupm::tool
