/// Text to markup and back.
#pragma once

#include <string>
#include <string_view>

namespace AdvXMLParser {

/// Escapes character data: '&', '<' and '>' become entities, CR becomes a reference (a bare CR is read as LF).
/// Throws InvalidCharacterException for a character that XML cannot hold.
[[nodiscard]] std::string EscapeText(std::u16string_view text);

/// Escapes an attribute value for quotes of that kind: as EscapeText, and the quote becomes an entity, tab and LF
/// become references.
[[nodiscard]] std::string EscapeAttribute(std::u16string_view text, char quote);

/// The meaning of a raw attribute value: references are replaced, white space becomes blanks.
[[nodiscard]] std::string DecodeAttribute(std::string_view raw);

/// Appends the meaning of raw content without elements: references are replaced, line ends become LF, CDATA is
/// included, comments and processing instructions are left out.
void AppendDecodedText(std::string_view raw, std::string& out);

/// Whether raw content is only character data, without comments and processing instructions.
[[nodiscard]] bool IsCharacterDataOnly(std::string_view raw) noexcept;

}  // namespace AdvXMLParser
