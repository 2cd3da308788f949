#include "tools/zupolicy/commands/help/CommandText.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace zupm::tool {
namespace {

/// The parser's name of a type is the name of the value, followed by what each check says about it.
struct TypeText {
    std::string value;
    std::string range;
    std::vector<std::string> choices;
};

std::vector<std::string> SplitChoices(std::string_view list)
{
    std::vector<std::string> parts;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(','), list.size());
        parts.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return parts;
}

/// The words of the parser, "INT in [1 - 64]", as a person writes them.
std::string RangeOf(const std::string& check)
{
    static constexpr std::string_view kStart = " in [";
    static constexpr std::string_view kDash = " - ";
    const std::size_t start = check.find(kStart);
    const std::size_t dash = check.find(kDash, start);
    if (start == std::string::npos || dash == std::string::npos || !check.ends_with(']')) {
        return check;
    }
    const std::size_t first = start + kStart.size();
    const std::size_t last = dash + kDash.size();
    return "from " + check.substr(first, dash - first) + " to " + check.substr(last, check.size() - 1 - last);
}

/// The name of a value that a flag may have. The parser keeps none, but the description has it: "--backup=SUFFIX".
std::string FlagValueOf(const CLI::Option& option)
{
    const std::string& description = option.get_description();
    const std::string start = "--" + option.get_lnames().front() + "=";
    const std::size_t found = description.find(start);
    if (found == std::string::npos) {
        return "VALUE";
    }
    const std::size_t first = found + start.size();
    return description.substr(first, description.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ-", first) - first);
}

TypeText TypeOf(const CLI::Option& option)
{
    const std::string type = option.get_type_name();
    const std::size_t colon = type.find(':');
    TypeText text{type.substr(0, colon), {}, {}};
    if (colon != std::string::npos) {
        const std::string check = type.substr(colon + 1);
        if (check.size() > 2 && check.front() == '{' && check.back() == '}') {
            text.choices = SplitChoices(std::string_view(check).substr(1, check.size() - 2));
        } else {
            text.range = RangeOf(check);
        }
    }
    return text;
}

bool TakesSeveral(const CLI::Option& option)
{
    return option.get_items_expected_max() > 1;
}

std::vector<std::string> NamesOf(const CLI::Option& option)
{
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) {
        names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back("--" + name);
    }
    return names;
}

OptionText OptionOf(const CLI::Option& option)
{
    OptionText text;
    text.names = NamesOf(option);
    const bool isFlag = option.get_items_expected_max() == 0;
    text.valueMayBeMissing = isFlag && !option.get_fnames().empty();
    if (text.valueMayBeMissing) {
        text.value = FlagValueOf(option);
    } else if (!isFlag) {
        TypeText type = TypeOf(option);
        text.value = std::move(type.value);
        text.range = std::move(type.range);
        text.choices = std::move(type.choices);
    }
    text.description = option.get_description();
    text.group = option.get_group();
    text.isRequired = option.get_required();
    text.repeats = TakesSeveral(option) || option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    for (const CLI::Option* other : option.get_excludes()) {
        text.others.push_back(NamesOf(*other).back());
    }
    // The parser keeps them in the order of their addresses.
    std::ranges::sort(text.others);
    return text;
}

}  // namespace

bool OptionText::Has(std::string_view name) const
{
    return std::ranges::find(names, name) != names.end();
}

const OptionText* CommandText::Find(std::string_view optionName) const
{
    const auto found = std::ranges::find_if(options, [&](const OptionText& option) { return option.Has(optionName); });
    return found == options.end() ? nullptr : &*found;
}

CommandText TextOf(const Command& command)
{
    CLI::App line(command.description);
    static_cast<void>(command.declare(line));
    CommandText text{command.name, command.description, command.examples, {}, {}};
    for (const CLI::Option* option : std::as_const(line).get_options()) {
        if (option->nonpositional()) {
            text.options.push_back(OptionOf(*option));
        } else {
            text.arguments.push_back(
                {option->get_name(true), option->get_description(), option->get_required(), TakesSeveral(*option)});
        }
    }
    return text;
}

}  // namespace zupm::tool
