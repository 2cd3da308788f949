#include "tools/zupolicy/commands/FlagValue.h"

#include <CLI/CLI.hpp>

#include <cstddef>

namespace zupm::tool {
namespace {

bool IsFlag(const CLI::Option& option)
{
    return option.get_items_expected_max() == 0 && option.get_fnames().empty();
}

bool TakesNextWord(const CLI::Option& option)
{
    return option.get_items_expected_max() != 0;
}

/// What one argument with options says about flags, and about the argument after it.
struct FlagUse {
    std::optional<std::string> flag;  ///< that is given a value
    bool takesNextWord = false;
};

FlagUse LookAtLong(const CLI::App& line, const std::string& argument)
{
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const CLI::Option* const option = line.get_option_no_throw(name);
    if (option == nullptr) {
        return {};
    }
    if (equals == argument.npos) {
        return {{}, TakesNextWord(*option)};
    }
    return IsFlag(*option) ? FlagUse{name, false} : FlagUse{};
}

/// "-nq" are two options, and the rest of "-oPATH" is a value.
FlagUse LookAtShort(const CLI::App& line, const std::string& argument)
{
    for (std::size_t i = 1; i < argument.size(); ++i) {
        const std::string name = std::string("-") + argument[i];
        const CLI::Option* const option = line.get_option_no_throw(name);
        if (option == nullptr) {
            return {};
        }
        if (TakesNextWord(*option)) {
            return {{}, i + 1 == argument.size()};
        }
        if (i + 1 < argument.size() && argument[i + 1] == '=') {
            return {name, false};
        }
    }
    return {};
}

}  // namespace

std::optional<std::string> FindFlagWithValue(const CLI::App& line, const std::vector<std::string>& arguments)
{
    bool isValue = false;
    for (const std::string& argument : arguments) {
        if (isValue || argument.size() < 2 || argument[0] != '-') {
            isValue = false;
            continue;
        }
        if (argument == "--") {
            break;
        }
        const FlagUse use = argument[1] == '-' ? LookAtLong(line, argument) : LookAtShort(line, argument);
        if (use.flag) {
            return use.flag;
        }
        isValue = use.takesNextWord;
    }
    return std::nullopt;
}

}  // namespace zupm::tool
