/// A file of the tool's own that replaces another one in one step.
#pragma once

#include <filesystem>
#include <fstream>
#include <iosfwd>
#include <string>

namespace zupm::tool {

/// A new file beside the one at a path, whose place it takes when it is complete.
///
/// Lifetime  What was not put in its place is removed. A process that is killed leaves it, in a folder `.zupolicy-...`.
/// Errors    Every call that fails throws ProblemFailure (FileError); the file at the path is as it was.
class ReplacedFile {
public:
    /// A UTF-8 path; links are followed. Only a regular file can be replaced, and the new one gets its rights.
    explicit ReplacedFile(const std::string& path);
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;

    [[nodiscard]] std::ostream& Stream() noexcept { return m_stream; }
    void Commit();

private:
    std::string m_name;
    std::filesystem::path m_path;
    std::filesystem::path m_folder;
    std::filesystem::path m_file;
    std::ofstream m_stream;
};

}  // namespace zupm::tool
