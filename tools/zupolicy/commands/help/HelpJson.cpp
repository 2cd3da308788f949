#include "tools/zupolicy/commands/help/HelpJson.h"

#include <algorithm>
#include <sstream>
#include <string_view>

#include "tools/zupolicy/commands/help/CommandText.h"
#include "tools/zupolicy/report/JsonWriter.h"

namespace zupm::tool {
namespace {

void WriteTexts(JsonWriter& json, std::string_view name, const std::vector<std::string>& texts)
{
    json.Key(name).BeginArray();
    for (const std::string& text : texts) {
        json.Text(text);
    }
    json.EndArray();
}

void WriteUnlessEmpty(JsonWriter& json, std::string_view name, const std::string& text)
{
    json.Key(name).TextOrNull(text.empty() ? std::nullopt : std::optional(text));
}

/// The lines, without the indentation that they have in the text form.
std::vector<std::string> LinesOf(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        lines.emplace_back(line.substr(std::min(line.find_first_not_of(' '), line.size())));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

void WriteArgument(JsonWriter& json, const ArgumentText& argument)
{
    json.BeginObject();
    json.Member("name", argument.name);
    json.Member("description", argument.description);
    json.Key("required").Boolean(argument.isRequired);
    json.Key("repeats").Boolean(argument.repeats);
    json.EndObject();
}

void WriteOption(JsonWriter& json, const OptionText& option)
{
    json.BeginObject();
    WriteTexts(json, "names", option.names);
    WriteUnlessEmpty(json, "value", option.value);
    json.Key("valueIsOptional").Boolean(option.valueMayBeMissing);
    WriteTexts(json, "choices", option.choices);
    WriteUnlessEmpty(json, "range", option.range);
    json.Member("description", option.description);
    json.Key("required").Boolean(option.isRequired);
    json.Key("repeats").Boolean(option.repeats);
    WriteTexts(json, "notWith", option.others);
    json.EndObject();
}

template <class Items, class Write>
void WriteList(JsonWriter& json, std::string_view name, const Items& items, const Write& write)
{
    json.Key(name).BeginArray();
    for (const auto& item : items) {
        write(json, item);
    }
    json.EndArray();
}

void WriteCommand(JsonWriter& json, const Command* command)
{
    const CommandText text = TextOf(*command);
    json.BeginObject();
    json.Member("name", text.name);
    json.Member("description", text.description);
    WriteTexts(json, "examples", LinesOf(text.examples));
    WriteList(json, "arguments", text.arguments, WriteArgument);
    WriteList(json, "options", text.options, WriteOption);
    json.EndObject();
}

}  // namespace

std::string HelpAsJson(std::span<const Command* const> commands)
{
    std::ostringstream out;
    JsonWriter json(out);
    json.BeginDocument();
    WriteList(json, "commands", commands, WriteCommand);
    json.EndObject();
    return out.str();
}

}  // namespace zupm::tool
