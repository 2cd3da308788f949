/// Waiting for changes of files.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace zupm::tool {

/// What the system knows of the file at the end of a name, without its bytes. Equal stamps mean the same bytes, unless
/// the file was written twice in the same moment of the system's clock.
struct FileStamp {
    bool exists = false;
    std::array<std::uint64_t, 6> parts{};

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// The stamp of the file that a UTF-8 path leads to now; links are followed anew.
[[nodiscard]] FileStamp StampOfFile(const std::string& path);

/// Notices that something happens in folders.
///
/// A folder that does not exist yet, and one that the system cannot watch (a network share, too many watches), is tried
/// again with each wait. So a caller that wants to be sure looks at its files from time to time.
class FolderWatch {
public:
    /// Each folder is watched once, however often it is named.
    explicit FolderWatch(const std::vector<std::filesystem::path>& folders);
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    /// Waits until something happens in one of the folders, whatever it is, or the time is over. Ctrl-C ends the wait
    /// soon. Returns whether something happened.
    [[nodiscard]] bool Wait(std::chrono::milliseconds longest);

private:
    struct System;
    std::unique_ptr<System> m_system;
};

}  // namespace zupm::tool
