#include "Schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>

#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

using nlohmann::json;

/// The part of JSON Schema that the tool's schemas use.
class Schema {
public:
    explicit Schema(const std::string& file) : m_document(json::parse(BytesOf(file))) {}

    [[nodiscard]] static bool Exists(const std::string& file) { return std::filesystem::exists(PathOf(file)); }

    /// Why the value does not fit; empty when it does.
    [[nodiscard]] std::string Misfit(const json& value) const { return Misfit(m_document, value); }

private:
    static std::filesystem::path PathOf(const std::string& file) { return std::filesystem::path(ZUPM_SCHEMAS) / file; }
    static std::string BytesOf(const std::string& file) { return ReadBytes(PathOf(file).u16string()); }

    [[nodiscard]] std::string Misfit(const json& schema, const json& value) const;
    [[nodiscard]] std::string Apply(const std::string& keyword, const json& rule, const json& schema,
                                    const json& value) const;
    [[nodiscard]] std::string MisfitOfMembers(const json& properties, const json& value) const;
    [[nodiscard]] std::string Refer(const std::string& target, const json& value) const;

    json m_document;
};

bool HasType(const json& value, const std::string& type)
{
    if (type == "integer") {
        return value.is_number_integer();
    }
    return type == value.type_name();
}

std::string Unless(bool holds, const std::string& complaint)
{
    return holds ? std::string() : complaint;
}

/// The complaint about a member that the schema does not list.
std::string SurplusMember(const json& properties, const json& value)
{
    if (value.is_object()) {
        for (const auto& item : value.items()) {
            if (!properties.contains(item.key())) {
                return "the member " + item.key() + " is too much";
            }
        }
    }
    return {};
}

std::string Schema::Refer(const std::string& target, const json& value) const
{
    const std::size_t hash = std::min(target.find('#'), target.size());
    const json::json_pointer pointer(target.substr(std::min(hash + 1, target.size())));
    if (hash == 0) {
        return Misfit(m_document.at(pointer), value);
    }
    const Schema other(target.substr(0, hash));
    return other.Misfit(other.m_document.at(pointer), value);
}

std::string Schema::MisfitOfMembers(const json& properties, const json& value) const
{
    for (const auto& [name, schema] : properties.items()) {
        if (!value.is_object() || !value.contains(name)) {
            continue;
        }
        if (const std::string misfit = Misfit(schema, value.at(name)); !misfit.empty()) {
            return name + ": " + misfit;
        }
    }
    return {};
}

std::string Schema::Apply(const std::string& keyword, const json& rule, const json& schema, const json& value) const
{
    // `then` and `else` belong to `if`.
    static const std::set<std::string> withoutRule = {"$schema",     "$id",  "$defs", "title",
                                                      "description", "then", "else"};
    if (withoutRule.contains(keyword)) {
        return {};
    }
    if (keyword == "properties") {
        return MisfitOfMembers(rule, value);
    }
    if (keyword == "if") {
        return Misfit(schema.at(Misfit(rule, value).empty() ? "then" : "else"), value);
    }
    const std::string complaint = value.dump() + " against " + keyword + " " + rule.dump();
    if (keyword == "$ref") {
        return Refer(rule, value);
    }
    if (keyword == "const") {
        return Unless(value == rule, complaint);
    }
    if (keyword == "enum") {
        return Unless(std::ranges::find(rule, value) != rule.end(), complaint);
    }
    if (keyword == "type") {
        const json types = rule.is_array() ? rule : json::array({rule});
        return Unless(std::ranges::any_of(types, [&](const json& type) { return HasType(value, type); }), complaint);
    }
    if (keyword == "minimum" || keyword == "maximum") {
        return Unless(!value.is_number() || (keyword == "minimum" ? value >= rule : value <= rule), complaint);
    }
    if (keyword == "minProperties") {
        return Unless(!value.is_object() || value.size() >= rule.get<std::size_t>(), complaint);
    }
    if (keyword == "minLength") {
        const auto isFirstByte = [](char byte) { return (byte & 0xC0) != 0x80; };
        return Unless(!value.is_string() ||
                          std::ranges::count_if(value.get<std::string>(), isFirstByte) >= rule.get<std::ptrdiff_t>(),
                      complaint);
    }
    if (keyword == "pattern") {
        // Regular expressions of bytes do not know \u; check-schemas looks at those.
        const auto pattern = rule.get<std::string>();
        return Unless(pattern.find("\\u") != pattern.npos || !value.is_string() ||
                          std::regex_search(value.get<std::string>(), std::regex(pattern)),
                      complaint);
    }
    if (keyword == "required") {
        return Unless(
            !value.is_object() || std::ranges::all_of(rule, [&](const json& name) { return value.contains(name); }),
            complaint);
    }
    if (keyword == "dependentRequired") {
        return Unless(std::ranges::all_of(rule.items(),
                                          [&](const auto& item) {
                                              return !value.contains(item.key()) ||
                                                     std::ranges::all_of(item.value(), [&](const json& name) {
                                                         return value.contains(name);
                                                     });
                                          }),
                      complaint);
    }
    if (keyword == "additionalProperties" && rule == false) {
        return SurplusMember(schema.at("properties"), value);
    }
    if (keyword == "items") {
        for (const json& item : value.is_array() ? value : json::array()) {
            if (std::string misfit = Misfit(rule, item); !misfit.empty()) {
                return misfit;
            }
        }
        return {};
    }
    if (keyword == "allOf" || keyword == "oneOf") {
        std::size_t fitting = 0;
        std::string misfits;
        for (const json& one : rule) {
            const std::string misfit = Misfit(one, value);
            fitting += std::size_t{misfit.empty()};
            misfits += misfit.empty() ? "" : "\n  " + misfit;
        }
        return Unless(fitting == (keyword == "allOf" ? rule.size() : std::size_t{1}), keyword + ":" + misfits);
    }
    throw std::logic_error("a keyword that the tests do not know: " + keyword);
}

std::string Schema::Misfit(const json& schema, const json& value) const
{
    if (schema.is_boolean()) {
        return Unless(schema.get<bool>(), "nothing may be here");
    }
    for (const auto& [keyword, rule] : schema.items()) {
        if (std::string misfit = Apply(keyword, rule, schema, value); !misfit.empty()) {
            return misfit;
        }
    }
    return {};
}

bool AsksForJson(const std::vector<std::string>& arguments)
{
    const auto end = std::ranges::find(arguments, "--");
    return std::find(arguments.begin(), end, "--json") != end;
}

bool IsHelp(const std::string& argument)
{
    return argument == "help" || argument == "--help" || argument == "-h";
}

std::string SchemaOf(const std::vector<std::string>& arguments)
{
    const std::string& command = arguments.front();
    if (std::ranges::any_of(arguments, IsHelp)) {
        return "help.json";
    }
    if (command == "--version") {
        return "version.json";
    }
    if (command == "set" || command == "remove") {
        return "change.json";
    }
    return (command == "import" ? "apply" : command) + ".json";
}

void ExpectDocument(const nlohmann::ordered_json& document, const std::vector<std::string>& arguments, int exitCode)
{
    ASSERT_TRUE(document.is_object() && !document.empty()) << document;
    EXPECT_EQ(document.begin().key(), "schema");
    const bool isFailure = document.contains("error");
    if (isFailure) {
        EXPECT_EQ(document["error"]["exit"], exitCode);
    }
    const std::string schema = Schema::Exists(SchemaOf(arguments)) ? SchemaOf(arguments) : "failure.json";
    // Only a failure may be about a command that does not exist.
    EXPECT_TRUE(isFailure || schema != "failure.json") << "there is no schema for the command " << arguments.front();
    EXPECT_EQ(Schema(schema).Misfit(json::parse(document.dump())), "") << schema << " does not fit " << document;
}

}  // namespace

void ExpectJsonOf(const std::vector<std::string>& arguments, const ToolRun& run)
{
    if (!AsksForJson(arguments)) {
        return;
    }
    SCOPED_TRACE(testing::PrintToString(arguments));
    EXPECT_TRUE(run.exitCode == 0 || !run.out.empty()) << "a failure without JSON: " << run.messages;
    std::istringstream stream(run.out);
    while (!(stream >> std::ws).eof()) {
        nlohmann::ordered_json document;
        try {
            stream >> document;
        } catch (const nlohmann::ordered_json::exception& error) {
            ADD_FAILURE() << error.what() << "\n" << run.out;
            return;
        }
        ExpectDocument(document, arguments, run.exitCode);
    }
}

}  // namespace zupm::test
