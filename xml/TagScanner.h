/// Attributes of a start tag.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "text/AsciiUnits.h"
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

/// Whether a name of the text is this one.
[[nodiscard]] inline bool NameEquals(std::string_view utf8, std::u16string_view name) noexcept
{
    // As many bytes as units can only be equal when both are ASCII; fewer bytes can never be.
    return utf8.size() == name.size() ? zupm::IsSameAscii(utf8.data(), name.data(), name.size())
                                      : utf8.size() > name.size() && zupm::EqualsUtf16(utf8, name);
}

/// The name in a start tag.
[[nodiscard]] std::string_view TagName(std::string_view tag) noexcept;

/// Where a new attribute goes: after the last one, or after the name.
[[nodiscard]] std::size_t AttributeInsertOffset(std::string_view tag) noexcept;

}  // namespace AdvXMLParser
