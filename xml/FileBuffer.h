/// Documents' texts in files.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

/// Reads a whole file as text. With `detect` the encoding is found out (signature, then declaration, else UTF-8) and
/// told; without, `encoding` says what it is. `buffer` and `encoding` are unchanged on failure.
/// Throws ReadWriteException: the code of reading the file, or, as InvalidTextException, 0x80070459 when the bytes are
/// not valid in their encoding. No other file is opened.
void ReadBufferFromFile(std::u16string_view path, XmlText& buffer, UTF_ENCODINGS& encoding, bool detect);

/// The same for bytes that were read already. Throws ReadWriteException: 0x80070459.
void DecodeBuffer(std::string bytes, XmlText& buffer, UTF_ENCODINGS& encoding, bool detect);

/// The bytes of a file with that text. With `writeSignature` the signed encodings get their signature. A character that
/// ISO-8859-1 cannot hold is written as a character reference in values, and a CDATA section is split around it.
/// Throws ReadWriteException: 0x80070459 when the encoding cannot hold a character of a name, comment, processing
/// instruction or DOCTYPE; 0x800700DF when the file could not be read again because it, or its text as UTF-8, is larger
/// than any that is read.
[[nodiscard]] std::string BytesToWrite(XmlText text, UTF_ENCODINGS encoding, bool writeSignature);

/// Writes BytesToWrite in one step: a reader sees the old file or the new one, and on failure the old one is intact.
/// Throws ReadWriteException: as BytesToWrite, before the file is touched, or the code of writing the file.
void WriteBufferToFile(std::u16string_view path, XmlText text, UTF_ENCODINGS encoding, bool writeSignature);

/// Lets BytesToWrite refuse more than `bytes` instead of more than kLargestFile. For tests.
void LimitWrittenFiles(std::size_t bytes) noexcept;

}  // namespace AdvXMLParser
