/// Bytes to text and back, in the encodings of policy files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "xml/Position.h"
#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

/// What the bytes are by their signature, else by how "<?" is encoded, else by the declaration: ISO-8859-1 when it
/// names that, UTF-8 for everything else (the parser refuses a declaration that does not fit).
[[nodiscard]] UTF_ENCODINGS DetectEncoding(std::string_view bytes) noexcept;

/// The encoding that an XML declaration at the start of a text names; empty without one.
[[nodiscard]] std::string_view DeclaredEncoding(std::string_view text) noexcept;

/// Whether a declaration may name `name` in a file with that encoding. Names are compared without regard to case.
[[nodiscard]] bool IsDeclarable(std::string_view name, UTF_ENCODINGS encoding) noexcept;

/// Bytes to text, signature dropped; nothing when the bytes are not valid in the encoding.
[[nodiscard]] std::optional<XmlText> Decode(std::string bytes, UTF_ENCODINGS encoding);

/// As Decode, but takes the bytes only when they are valid; otherwise at most their signature is gone from them.
[[nodiscard]] std::optional<XmlText> TryDecode(std::string& bytes, UTF_ENCODINGS encoding);

/// Where bytes without signature, for which Decode gives nothing, stop being valid in their encoding.
[[nodiscard]] Position PositionOfInvalid(std::string_view bytes, UTF_ENCODINGS encoding);

/// Text to bytes; nothing when the encoding cannot hold a character where no reference can stand for it.
[[nodiscard]] std::optional<std::string> Encode(std::string_view utf8, UTF_ENCODINGS encoding, bool writeSignature);

}  // namespace AdvXMLParser
