/// The bytes of a file on their way to the disk.
#pragma once

#include <string_view>
#include <utility>

namespace zupm {

/// Gives the bytes of a file that is written, piece by piece, so that they need not be in memory all at once.
class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// The next piece, valid until the next call; an empty one is the end. Throws std::bad_alloc.
    [[nodiscard]] virtual std::string_view Next() = 0;

protected:
    ~ByteSource() = default;
};

/// Bytes that are in memory already.
class OnePiece final : public ByteSource {
public:
    explicit OnePiece(std::string_view bytes) noexcept : m_bytes(bytes) {}
    [[nodiscard]] std::string_view Next() override { return std::exchange(m_bytes, {}); }

private:
    std::string_view m_bytes;
};

}  // namespace zupm
