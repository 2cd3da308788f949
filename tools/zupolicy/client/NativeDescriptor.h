/// An open file of the native system.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace zupm::tool {

/// Owns an open file, or none.
class OwnedDescriptor {
public:
    OwnedDescriptor() = default;
    explicit OwnedDescriptor(int number) : m_number(number) {}
    ~OwnedDescriptor()
    {
        if (m_number >= 0) {
            close(m_number);
        }
    }
    OwnedDescriptor(OwnedDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;

    [[nodiscard]] int Get() const noexcept { return m_number; }
    [[nodiscard]] bool IsOpen() const noexcept { return m_number >= 0; }

private:
    int m_number = -1;
};

/// Whether the whole file was read, from its beginning; the reason is in errno.
[[nodiscard]] inline bool ReadAll(int from, std::string& bytes)
{
    constexpr std::size_t kPiece = std::size_t{64} << 10u;
    std::vector<char> piece(kPiece);
    for (bytes.clear();;) {
        const ssize_t count = pread(from, piece.data(), piece.size(), static_cast<off_t>(bytes.size()));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count == 0) {
            return true;
        }
        bytes.append(piece.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

/// Whether all bytes were written; the reason is in errno.
[[nodiscard]] inline bool WriteAll(int to, const char* bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = write(to, bytes, size);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            return false;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

}  // namespace zupm::tool
