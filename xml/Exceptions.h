/// What the document library throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace AdvXMLParser {

/// A file could not be read or written; the code is a platform code such as 0x80070002.
class ReadWriteException : public std::exception {
public:
    explicit ReadWriteException(std::int32_t errorCode) noexcept : m_errorCode(errorCode) {}

    [[nodiscard]] std::int32_t GetErrorCode() const noexcept { return m_errorCode; }
    [[nodiscard]] const char* what() const noexcept override { return "a file could not be read or written"; }

private:
    std::int32_t m_errorCode;
};

/// A file's bytes are not valid in their encoding. Line and column are of the first invalid byte, counted as
/// in a ParsingException.
class InvalidTextException : public ReadWriteException {
public:
    InvalidTextException(std::int32_t errorCode, std::uint32_t line, std::uint32_t column) noexcept
        : ReadWriteException(errorCode), m_line(line), m_column(column)
    {
    }

    [[nodiscard]] std::uint32_t GetLine() const noexcept { return m_line; }
    [[nodiscard]] std::uint32_t GetColumn() const noexcept { return m_column; }

private:
    std::uint32_t m_line;
    std::uint32_t m_column;
};

/// The parser refuses a text. Line and column count from 1; a column counts characters.
class ParsingException : public std::exception {
public:
    ParsingException(std::uint32_t line, std::uint32_t column, std::string reason)
        : m_line(line), m_column(column), m_reason(std::move(reason))
    {
    }

    [[nodiscard]] std::uint32_t GetLine() const noexcept { return m_line; }
    [[nodiscard]] std::uint32_t GetColumn() const noexcept { return m_column; }
    /// The reason in words (ASCII).
    [[nodiscard]] const std::string& GetReason() const noexcept { return m_reason; }
    [[nodiscard]] const char* what() const noexcept override { return m_reason.c_str(); }

private:
    std::uint32_t m_line;
    std::uint32_t m_column;
    std::string m_reason;
};

/// A text holds a character that XML 1.0 cannot hold, or a name is not valid; nothing was changed.
class InvalidCharacterException : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "a character that XML cannot hold"; }
};

/// A document would outgrow its 32-bit offsets; nothing was changed.
class DocumentTooLargeException : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "the document is too large"; }
};

}  // namespace AdvXMLParser
