/// A folder for what exists only while the tool runs.
#pragma once

#include <filesystem>

namespace zupm::tool {

/// A new, empty folder among the user's temporary files, under a name that nobody can guess.
///
/// Lifetime  The destructor removes the folder with everything in it. What cannot be removed stays, without a word.
class TemporaryFolder {
public:
    /// Throws std::system_error.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace zupm::tool
