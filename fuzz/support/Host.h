/// The component inside a fuzzer.
#pragma once

#include <string>
#include <string_view>

#include "tests/support/ComponentHost.h"
#include "tests/support/TempFolder.h"

namespace zupm::fuzz {

/// The component started once for all inputs, and a folder for its files. Nothing waits for the disk: what a loss of
/// power leaves is not what fuzzing is about. Put TMPDIR on a file system in memory for speed.
class Host {
public:
    /// The one of this process, made at the first call.
    [[nodiscard]] static Host& Get();

    /// The full path of a file in the folder.
    [[nodiscard]] std::u16string Path(std::u16string_view name) const { return m_folder.Path(name); }
    /// Writes a file in the folder and gives its full path.
    [[nodiscard]] std::u16string Write(std::u16string_view name, std::string_view bytes) const;
    [[nodiscard]] std::string Read(std::u16string_view name) const { return m_folder.Read(name); }

private:
    Host();

    test::ComponentHost m_component;
    test::TempFolder m_folder;
};

}  // namespace zupm::fuzz
