/// The texts of documents in files.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

/// Reads a whole file as text. With `detect` it finds out the encoding and reports it in `encoding`; without,
/// `encoding` says what it is. `buffer` and `encoding` are unchanged on failure. Throws ReadWriteException: the code of
/// reading the file, or, as InvalidTextException, 0x80070459 when the bytes are not valid in their encoding. No other
/// file is opened.
void ReadBufferFromFile(std::u16string_view path, XmlText& buffer, UTF_ENCODINGS& encoding, bool detect);

/// ReadBufferFromFile for bytes that the caller has read already. Throws ReadWriteException: 0x80070459.
void DecodeBuffer(std::string bytes, XmlText& buffer, UTF_ENCODINGS& encoding, bool detect);

/// The bytes of a file with that text. With `writeSignature` the signed encodings get their signature. In values, a
/// character that ISO-8859-1 cannot hold becomes a character reference; a CDATA section is split around it.
/// Throws ReadWriteException: 0x80070459 when the encoding cannot hold a character of a name, comment, processing
/// instruction or DOCTYPE; 0x800700DF when the file, or its text as UTF-8, is too large to be read again.
[[nodiscard]] std::string BytesToWrite(XmlText text, UTF_ENCODINGS encoding, bool writeSignature);

/// Writes BytesToWrite in one step: a reader sees the old file or the new one, and on failure the old one is intact.
/// Throws ReadWriteException: as BytesToWrite, before the file is touched, or the code of writing the file.
void WriteBufferToFile(std::u16string_view path, XmlText text, UTF_ENCODINGS encoding, bool writeSignature);

/// Makes BytesToWrite refuse more than `bytes` instead of more than kLargestFile. For tests.
void LimitWrittenFiles(std::size_t bytes) noexcept;

}  // namespace AdvXMLParser
