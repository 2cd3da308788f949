/// Comparing a file with the bytes that it is expected to hold.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/ByteSource.h"

namespace zupm {

/// Compares a file, which is read piece by piece, with bytes that arrive in pieces of other sizes.
///
/// Errors    Throws what the bytes throw.
class Comparison {
public:
    explicit Comparison(RepeatableBytes& expected) noexcept : m_expected(expected) { m_expected.Rewind(); }

    /// Whether the bytes go on with what was read.
    [[nodiscard]] bool GoesOnWith(std::string_view read)
    {
        while (!read.empty()) {
            if (IsAtEnd()) {
                return false;
            }
            const std::size_t size = std::min(read.size(), m_piece.size());
            if (read.substr(0, size) != m_piece.substr(0, size)) {
                return false;
            }
            read.remove_prefix(size);
            m_piece.remove_prefix(size);
        }
        return true;
    }

    /// Whether all bytes were compared.
    [[nodiscard]] bool IsAtEnd()
    {
        if (m_piece.empty()) {
            m_piece = m_expected.Next();
        }
        return m_piece.empty();
    }

private:
    RepeatableBytes& m_expected;
    std::string_view m_piece;
};

}  // namespace zupm
