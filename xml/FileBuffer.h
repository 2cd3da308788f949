/// The texts of documents in files.
#pragma once

#include <string>
#include <string_view>

#include "xml/FileBytes.h"
#include "xml/TextRuns.h"
#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"

namespace AdvXMLParser {

/// Reads a whole file as text. With `detect` it finds out the encoding and reports it in `encoding`; without,
/// `encoding` says what it is. `buffer` and `encoding` are unchanged on failure. Throws ReadWriteException: the code of
/// reading the file, or, as InvalidTextException, 0x80070459 when the bytes are not valid in their encoding; UTF-8 is
/// checked by the parser. No other file is opened.
void ReadBufferFromFile(std::u16string_view path, XmlText& buffer, UTF_ENCODINGS& encoding, bool detect);

/// ReadBufferFromFile for bytes that the caller has read already. Throws InvalidTextException.
void DecodeBuffer(std::string bytes, XmlText& buffer, UTF_ENCODINGS& encoding, bool detect);

/// Writes the text (FileBytes) in one step: a reader sees the old file or the new one, and on failure the old one is
/// intact. Throws ReadWriteException: as FileBytes, before the file is touched, or the code of writing the file.
void WriteBufferToFile(std::u16string_view path, const XmlText& text, UTF_ENCODINGS encoding, bool writeSignature);

/// The same for a text in pieces.
void WriteRunsToFile(std::u16string_view path, TextRuns runs, UTF_ENCODINGS encoding, bool writeSignature);

}  // namespace AdvXMLParser
