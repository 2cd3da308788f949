/// The registry file on disk.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "comrt/RegistryText.h"

namespace zupm::runtime {

/// The file that holds the registry, read whole and replaced whole.
///
/// Lifetime  Holds the path only; every call opens what it needs.
/// Threads   Any thread and any process: a change holds the lock file `<registry>.lock` (a stable name, never removed)
///           from reading to replacing, so none is lost. A reader needs no lock: it sees the old file or the new one.
/// Errors    Result codes: those of the file operations, kBadRegistryFile for a file that is not in the format (it is
///           never overwritten); std::bad_alloc passes.
class RegistryStore {
public:
    explicit RegistryStore(std::u16string path) : m_path(std::move(path)) {}

    /// Where the registry file lies: `$ZUREGISTRY`, or `$XDG_DATA_HOME/zupolicymanager/registry`, or
    /// `$HOME/.local/share/zupolicymanager/registry`. A program that runs with more rights than its caller ignores the
    /// environment. FileNotFound (no variable names an absolute folder), InvalidName (a path that is not absolute or
    /// not UTF-8).
    [[nodiscard]] static result::Code Locate(std::u16string& path);

    /// Reads the registry; a file that does not exist is an empty registry.
    [[nodiscard]] result::Code Read(RegistryText& text) const;

    [[nodiscard]] result::Code CreateKey(std::string_view key) const;
    [[nodiscard]] result::Code SetValue(std::string_view key, std::string_view name, std::string_view value) const;
    /// Success too, with no file made, when there is no such key.
    [[nodiscard]] result::Code DeleteTree(std::string_view key) const;

private:
    template <class Edit>
    [[nodiscard]] result::Code Change(const Edit& edit) const;
    /// Makes the folders above the file that are missing, each for its owner alone.
    [[nodiscard]] result::Code CreateFolders() const;

    std::u16string m_path;
};

}  // namespace zupm::runtime
