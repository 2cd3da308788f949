/// The tags of a text, without a tree.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "xml/scan/Scanner.h"

namespace AdvXMLParser {

/// Reads the tags of a well-formed text in order. It remembers no open element, so any depth costs the same. Text,
/// comments, CDATA sections, processing instructions and the DOCTYPE are passed over.
class MarkupReader {
public:
    /// The text fits in 32 bits.
    explicit MarkupReader(std::string_view text) noexcept : m_text(text) {}

    /// The next tag, or nothing at the end.
    [[nodiscard]] std::optional<Tag> Next() noexcept;

private:
    [[nodiscard]] Tag TakeTag(std::size_t begin) noexcept;
    void SkipMarkup(std::size_t begin) noexcept;
    void SkipDeclaration() noexcept;
    /// Goes on after the next `mark` at or after `from`.
    void SkipPast(std::string_view mark, std::size_t from) noexcept;

    std::string_view m_text;
    std::size_t m_at = 0;
};

}  // namespace AdvXMLParser
