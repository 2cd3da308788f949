/// A folder for tests of files as the native system sees them.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TempFolder.h"

namespace zupm::test {

/// A TempFolder that everybody may use, with names in UTF-8 and what only the native system knows of files.
class TestFolder {
public:
    TestFolder();

    [[nodiscard]] std::string Path(std::string_view name) const;
    [[nodiscard]] std::u16string Wide(std::string_view name) const;

    void Write(std::string_view name, std::string_view bytes) const;
    [[nodiscard]] std::string Read(std::string_view name) const;
    /// The names in it, sorted.
    [[nodiscard]] std::vector<std::string> Names() const;
    /// The twelve bits of a file's mode; a link is followed.
    [[nodiscard]] mode_t Mode(std::string_view name) const;
    [[nodiscard]] bool IsLink(std::string_view name) const;

private:
    TempFolder m_folder;
};

/// The number of files that this process has open.
[[nodiscard]] std::size_t OpenFileCount();

/// The exit code of a process of the test; throws when the process ended in another way.
[[nodiscard]] int WaitForChild(pid_t child);

/// Runs `body` in a process of its own without the rights of root. The result is what it returned (0 to 255).
[[nodiscard]] int RunWithoutRights(const std::function<int()>& body);

}  // namespace zupm::test
