/// Registration scripts: what a class writes below the classes root, as text.
///
///     script  = "HKCR" "{" key... "}"
///     key     = [rule] name ["=" text] ["{" (key | value)... "}"]      text is the key's default value
///     value   = "val" name "=" text
///     rule    = "NoRemove" | "ForceRemove"
///     name    = a word of ASCII letters, digits, ".", "-" and "_", or a text
///     text    = '...' with two quotes for a quote, on one line; in values %MODULE% is the module's path
///
/// | rule        | registering                  | unregistering                        |
/// |-------------|------------------------------|--------------------------------------|
/// | (none)      | the key is created           | the key goes, with everything below  |
/// | NoRemove    | the key is created           | the key stays, its keys by their rule|
/// | ForceRemove | the key goes and is created  | the key goes, with everything below  |
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "zuPolicyManager/Results.h"

namespace zupm {

enum class ScriptRule { Plain, NoRemove, ForceRemove };

/// One value of a key; the default value has an empty name.
struct ScriptValue {
    std::u16string name;
    std::u16string text;

    friend bool operator==(const ScriptValue&, const ScriptValue&) = default;
};

/// One key, with its path from the classes root.
struct ScriptKey {
    std::u16string path;
    ScriptRule rule = ScriptRule::Plain;
    /// Unregistering removes this key itself: it may be removed, and no key above it is.
    bool isRemovalRoot = false;
    std::vector<ScriptValue> values;

    friend bool operator==(const ScriptKey&, const ScriptKey&) = default;
};

/// A script's keys in its order: a key comes before the keys below it.
using RegistryScript = std::vector<ScriptKey>;

/// Why and where a script could not be read.
struct ScriptError {
    std::size_t line;
    std::string_view reason;

    friend bool operator==(const ScriptError&, const ScriptError&) = default;
};

/// Reads a whole script. Throws std::bad_alloc only.
[[nodiscard]] std::variant<RegistryScript, ScriptError> ReadRegistryScript(std::string_view text,
                                                                           std::u16string_view modulePath);

enum class ScriptMode { Register, Unregister };

/// Reads a script and then runs it; one that cannot be read changes nothing and gives GeneralFailure.
/// Registering stops at the first failing change and gives its code; what was written stays.
/// Unregistering goes on and gives the code of the first failing change. OutOfMemory.
[[nodiscard]] result::Code RunRegistryScript(std::string_view text, ScriptMode mode,
                                             std::u16string_view modulePath) noexcept;

}  // namespace zupm
