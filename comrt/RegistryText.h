/// The registry file's text: keys, values, and the format they are kept in.
///
/// Format: UTF-8 without signature, lines ended by LF (the last one too).
///
///     [CLSID\{A5B589D5-CFB6-4E9A-9455-39963CBF74CB}\InprocServer32]
///     @="/usr/lib/libzuPolicyManager64.so"
///     "ThreadingModel"="Free"
///
/// A line in brackets names a key: everything up to the bracket that ends the line. The lines after it are the key's
/// values, `@` being its default value. `%` with two hexadecimal digits means one ASCII character; `%`, `"` and
/// the control characters are always written that way, nothing else must be. Empty lines are allowed. Anything else
/// makes the text refused as a whole.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm::runtime {

/// The result for a file that does not hold the format above.
inline constexpr result::Code kBadRegistryFile = static_cast<result::Code>(0x8007000Du);

/// The longest key, in bytes of UTF-8: each level of a key is kept as a key of its own, so this bounds what a short
/// file can unfold to.
inline constexpr std::size_t kLongestKey = 512;

/// Orders names without regard to ASCII case.
struct AsciiCaseLess {
    using is_transparent = void;

    [[nodiscard]] bool operator()(std::string_view left, std::string_view right) const noexcept;
};

/// A registry in memory. Texts are UTF-8, as in the file; whether they are valid is the caller's business.
///
/// Threads   None of its own.
/// Errors    Result codes, with the registry as it was; std::bad_alloc passes and leaves it usable but half changed.
/// Invariant Every key's parents exist. Spelling is that of a name's first use.
class RegistryText {
public:
    /// Nothing when the text is not in the format. An empty text is an empty registry.
    [[nodiscard]] static std::optional<RegistryText> Parse(std::string_view text);
    /// Keys and values in the order of their names; Parse gives the same registry back.
    [[nodiscard]] std::string Serialise() const;

    /// Creates the key and its parents. InvalidName (a name between two `\` is empty, an embedded null), NameTooLong.
    [[nodiscard]] result::Code CreateKey(std::string_view key);
    /// Sets a value, creating the key; an empty name is the default value. The codes of CreateKey.
    [[nodiscard]] result::Code SetValue(std::string_view key, std::string_view name, std::string_view value);
    /// Null when the key or the value does not exist.
    [[nodiscard]] const std::string* FindValue(std::string_view key, std::string_view name) const;
    [[nodiscard]] bool HasKey(std::string_view key) const { return m_keys.find(key) != m_keys.end(); }
    /// Removes the key with everything below it.
    void DeleteTree(std::string_view key);

private:
    using Values = std::map<std::string, std::string, AsciiCaseLess>;

    [[nodiscard]] bool ParseLine(std::string_view line, Values*& current);
    [[nodiscard]] static bool ParseValue(std::string_view line, Values& values);
    [[nodiscard]] Values& KeyAt(std::string_view key);

    std::map<std::string, Values, AsciiCaseLess> m_keys;
};

}  // namespace zupm::runtime
