/// The bytes of a file on their way to the disk.
#pragma once

#include <string_view>

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

/// Bytes that can be given more than once: a file is compared with them before it is replaced.
class RepeatableBytes : public ByteSource {
public:
    /// Makes the next call of Next give the first piece.
    virtual void Rewind() noexcept = 0;

protected:
    ~RepeatableBytes() = default;
};

/// Bytes that are in memory already.
class OnePiece final : public RepeatableBytes {
public:
    explicit OnePiece(std::string_view bytes) noexcept : m_bytes(bytes), m_rest(bytes) {}
    [[nodiscard]] std::string_view Next() override
    {
        const std::string_view piece = m_rest;
        m_rest = {};
        return piece;
    }
    void Rewind() noexcept override { m_rest = m_bytes; }

private:
    std::string_view m_bytes;
    std::string_view m_rest;
};

}  // namespace zupm
