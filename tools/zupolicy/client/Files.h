/// Files of the tool's own: what may be replaced, temporary folders, and a file on its way to a stream.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>

namespace zupm::tool {

/// True for a regular file and for a name that is free. False for devices, pipes and folders, and for a name that leads
/// to an open file of this process (`/dev/stdout`): a program that has that file open would never see the new one.
[[nodiscard]] bool IsOrdinaryFile(std::filesystem::path path);

/// Whether two UTF-8 paths name one file that exists.
[[nodiscard]] bool AreSameFile(const std::string& one, const std::string& other);

/// A new, empty folder among the user's temporary files, under a name that cannot be guessed.
///
/// Lifetime  The destructor removes the folder with everything in it, and ignores what it cannot remove.
class TemporaryFolder {
public:
    /// Throws std::system_error.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    /// Makes the folder, which only the user may enter. Throws std::system_error.
    [[nodiscard]] static std::filesystem::path Make();

    std::filesystem::path m_path;
};

/// A new, empty file of this process, which is opened by its path. Natively nothing of it stays when the process is
/// killed.
class ScratchFile {
public:
    /// Throws std::system_error.
    ScratchFile();
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile(ScratchFile&&) noexcept;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ScratchFile& operator=(ScratchFile&&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    struct Held;
    std::unique_ptr<Held> m_held;
    std::filesystem::path m_path;
};

/// Writes all bytes of the file to the stream, unchanged. Throws std::system_error when the file cannot be read; a
/// failed write is in the stream's state.
void WriteFileTo(std::ostream& out, const std::filesystem::path& path);

}  // namespace zupm::tool
