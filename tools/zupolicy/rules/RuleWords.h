/// The words of rules that hold no rules in them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/zupolicy/model/JsonText.h"
#include "tools/zupolicy/rules/RuleSet.h"

namespace zupm::rules {

/// Reads the word into the rule; returns false for a word that holds rules, or that does not exist. Throws
/// JsonComplaint, as the others do.
bool ReadPlainWord(const model::JsonValue::Member& member, Rule& rule);
/// The name of the word with this number; empty after the last.
[[nodiscard]] std::string_view PlainWordAt(std::size_t number);

/// Refuses a value of another type; `what` says which type the word takes.
void Require(const model::JsonValue& value, model::JsonValue::Type type, std::string_view word, const char* what);
[[nodiscard]] const std::string& TextOf(const model::JsonValue& value, std::string_view word);
/// Refuses an expression that is not valid, at this byte of the rules.
[[nodiscard]] NamedPattern PatternOf(const std::string& text, std::size_t at);
[[nodiscard]] std::string InQuotes(std::string_view name);

}  // namespace zupm::rules
