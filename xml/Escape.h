/// Characters to markup and back.
#pragma once

#include <string>
#include <string_view>

namespace AdvXMLParser {

/// Character data: '&', '<', '>' as entities, CR as a reference (a bare one would be read as LF).
/// Throws InvalidCharacterException for what XML cannot hold.
[[nodiscard]] std::string EscapeText(std::u16string_view text);

/// An attribute value between quotes of that kind: also the quote as an entity, tab and LF as references.
[[nodiscard]] std::string EscapeAttribute(std::u16string_view text, char quote);

/// What a raw attribute value means: references replaced, white space turned into blanks.
[[nodiscard]] std::string DecodeAttribute(std::string_view raw);

/// Appends what raw content (without elements) means as text: references replaced, line ends as LF, CDATA taken in,
/// comments and processing instructions left out.
void AppendDecodedText(std::string_view raw, std::string& out);

/// Whether raw content is character data and nothing else: no comment, no processing instruction.
[[nodiscard]] bool IsCharacterDataOnly(std::string_view raw) noexcept;

}  // namespace AdvXMLParser
