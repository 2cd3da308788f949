/// The XML declaration.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace AdvXMLParser {

/// What an XML declaration says.
struct Declaration {
    std::uint32_t length = 0;   ///< of the whole declaration
    std::string_view encoding;  ///< as it is written; empty when none is named
};

/// Whether a text begins with an XML declaration, well-formed or not.
[[nodiscard]] bool HasDeclaration(std::string_view text) noexcept;

/// The declaration at the start of a text; nothing when it is not well-formed or its version is not "1.0".
[[nodiscard]] std::optional<Declaration> ReadDeclaration(std::string_view text) noexcept;

}  // namespace AdvXMLParser
