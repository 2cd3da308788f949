/// An open file.
#pragma once

#include <utility>

#include "platform/posix/SystemCalls.h"

namespace zupm::native {

/// Owns an open file of the system and closes it.
///
/// Invariant A handle below 0 owns nothing.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(int file) noexcept : m_file(file) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    FileHandle(FileHandle&& other) noexcept : m_file(std::exchange(other.m_file, kNone)) {}
    FileHandle& operator=(FileHandle&& other) noexcept
    {
        FileHandle former(std::move(other));
        std::swap(m_file, former.m_file);
        return *this;
    }
    ~FileHandle() { static_cast<void>(Close()); }

    [[nodiscard]] int Get() const noexcept { return m_file; }
    explicit operator bool() const noexcept { return m_file >= 0; }

    /// Closes now; false, with errno, when the system reports that what was written may be lost. The file counts as
    /// closed all the same, also when a signal interrupts the call.
    [[nodiscard]] bool Close() noexcept
    {
        const int file = std::exchange(m_file, kNone);
        return file < 0 || Calls().close(file) == 0 || WasInterrupted();
    }

private:
    static constexpr int kNone = -1;
    int m_file = kNone;
};

/// Opens below a folder (or AT_FDCWD); the handle owns nothing, with errno, on failure. Never waits for another end,
/// becomes no controlling terminal, is not inherited by other programs.
[[nodiscard]] FileHandle OpenBelow(int folder, const char* path, int flags, mode_t mode = 0) noexcept;

}  // namespace zupm::native
