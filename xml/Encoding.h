/// Bytes to text and back, in the encodings of policy files. The table in Encoding.cpp has one row for each of them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/Utf16Bytes.h"
#include "xml/Position.h"
#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

/// What the bytes are: by their signature, without one by how "<?" is encoded, and where that is ASCII by the name in
/// the declaration. Everything else is UTF-8 (the parser refuses a declaration that does not fit).
[[nodiscard]] UTF_ENCODINGS DetectEncoding(std::string_view bytes) noexcept;

/// Whether a declaration may name `name` in a file with that encoding. Names are compared without regard to case.
[[nodiscard]] bool IsDeclarable(std::string_view name, UTF_ENCODINGS encoding) noexcept;

/// The bytes that begin a file in that encoding; empty for one without a signature.
[[nodiscard]] std::string_view SignatureOf(UTF_ENCODINGS encoding) noexcept;

/// The byte order of the encodings of UTF-16, nothing for the others.
[[nodiscard]] std::optional<zupm::ByteOrder> Utf16OrderOf(UTF_ENCODINGS encoding) noexcept;

/// False for ISO-8859-1 alone.
[[nodiscard]] bool HoldsEveryCharacter(UTF_ENCODINGS encoding) noexcept;

/// Bytes to text, without the signature. Nothing when the bytes are not valid in the encoding; `invalid` is then the
/// place of the first that is not.
[[nodiscard]] std::optional<XmlText> Decode(std::string bytes, UTF_ENCODINGS encoding, Position* invalid = nullptr);
/// The same for a parser, which looks at every byte of the text anyway: UTF-8 is left unchecked.
[[nodiscard]] std::optional<XmlText> DecodeUnchecked(std::string bytes, UTF_ENCODINGS encoding,
                                                     Position* invalid = nullptr);
/// Checks a text that DecodeUnchecked left unchecked; with both of them the result is that of Decode. False, and no
/// text any more, when it is not valid.
[[nodiscard]] bool Check(XmlText& text, Position* invalid = nullptr);

/// Text to bytes. Nothing when the encoding cannot hold a character and no reference can replace it.
[[nodiscard]] std::optional<std::string> Encode(std::string text, UTF_ENCODINGS encoding, bool writeSignature);

}  // namespace AdvXMLParser
