/// A folder for tests of files as the system sees them.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TempFolder.h"

namespace zupm::test {

/// A new empty folder that everybody may use, removed with everything in it at the end.
class TestFolder {
public:
    TestFolder();

    [[nodiscard]] std::string Path(std::string_view name) const;
    [[nodiscard]] std::u16string Wide(std::string_view name) const;

    void Write(std::string_view name, std::string_view bytes) const;
    [[nodiscard]] std::string Read(std::string_view name) const;
    /// The names in it, sorted; links are not followed.
    [[nodiscard]] std::vector<std::string> Names() const { return m_folder.Names(); }
    /// The mode's twelve bits, of the link's target.
    [[nodiscard]] mode_t Mode(std::string_view name) const;
    [[nodiscard]] bool IsLink(std::string_view name) const;

private:
    TempFolder m_folder;
};

/// How many files this process has open.
[[nodiscard]] std::size_t OpenFileCount();

/// What a process of the test exited with; throws when it died of something else.
[[nodiscard]] int WaitForChild(pid_t child);

/// Runs `body` in a process of its own without the rights of root, and gives what it returned (0 to 255).
[[nodiscard]] int RunWithoutRights(const std::function<int()>& body);

}  // namespace zupm::test
