/// What lies below a key of the registry's classes root.
#pragma once

#include <map>
#include <string>

namespace zupm::test {

/// The text values of one key by name; the default value has the empty name.
using RegistryValues = std::map<std::wstring, std::wstring>;

/// The values of a key (under the empty path) and of every key below it, by path.
using RegistryTree = std::map<std::wstring, RegistryValues>;

/// Everything below a key; throws when the key is missing or a value is no text.
[[nodiscard]] RegistryTree ReadRegistryTree(const std::wstring& key);
[[nodiscard]] bool HasRegistryKey(const std::wstring& key);
/// A key's default value; a note in angle brackets when there is none.
[[nodiscard]] std::wstring ReadRegistryText(const std::wstring& key);
/// Sets a key's default value, making the key.
void WriteRegistryText(const std::wstring& key, const std::wstring& text);
void DeleteRegistryTree(const std::wstring& key);

}  // namespace zupm::test
