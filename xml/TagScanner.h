/// Attributes of a start tag.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "text/Utf.h"

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

/// Whether a name of the text is this one. Most names that are compared differ in their first character.
[[nodiscard]] inline bool NameEquals(std::string_view utf8, std::u16string_view name) noexcept
{
    const bool mayBeEqual = utf8.size() >= name.size() && !name.empty() &&
                            (name.front() >= 0x80 || static_cast<unsigned char>(utf8.front()) == name.front());
    return mayBeEqual && zupm::EqualsUtf16(utf8, name);
}

/// The name in a start tag.
[[nodiscard]] std::string_view TagName(std::string_view tag) noexcept;

/// Where a new attribute goes: after the last one, or after the name.
[[nodiscard]] std::size_t AttributeInsertOffset(std::string_view tag) noexcept;

}  // namespace AdvXMLParser
