/// Attributes of a start tag.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace AdvXMLParser {

/// One attribute of a start tag; offsets are offsets in the tag.
struct AttributeSpan {
    std::string_view name;
    std::string_view value;  ///< raw, without the quotes
    std::size_t valueOffset = 0;
    std::size_t end = 0;  ///< after the closing quote
    char quote = '"';
};

/// Reads the attributes of a well-formed start tag in order.
class TagScanner {
public:
    explicit TagScanner(std::string_view tag) noexcept;

    /// The next attribute, or nothing.
    [[nodiscard]] std::optional<AttributeSpan> Next() noexcept;

private:
    std::string_view m_tag;
    std::size_t m_at;
};

/// Where a new attribute goes: after the last one, or after the name.
[[nodiscard]] std::size_t AttributeInsertOffset(std::string_view tag) noexcept;

}  // namespace AdvXMLParser
