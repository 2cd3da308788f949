#include "xml/FileBuffer.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/Files.h"
#include "xml/Encoding.h"
#include "xml/Exceptions.h"

namespace AdvXMLParser {

namespace {

void ThrowUnlessDone(zupm::result::Code code)
{
    if (code < 0) {
        throw ReadWriteException(code);
    }
}

}  // namespace

void ReadBufferFromFile(std::u16string_view path, XmlText& buffer, UTF_ENCODINGS& encoding, bool detect)
{
    std::string bytes;
    ThrowUnlessDone(zupm::ReadWholeFile(path, bytes));
    DecodeBuffer(std::move(bytes), buffer, encoding, detect);
}

void DecodeBuffer(std::string bytes, XmlText& buffer, UTF_ENCODINGS& encoding, bool detect)
{
    const UTF_ENCODINGS actual = detect ? DetectEncoding(bytes) : encoding;
    Position invalid;
    std::optional<XmlText> text = DecodeUnchecked(std::move(bytes), actual, &invalid);
    if (!text) {
        throw InvalidTextException(zupm::result::NotValidInItsEncoding, invalid.line, invalid.column);
    }
    buffer = std::move(*text);
    encoding = actual;
}

void WriteBufferToFile(std::u16string_view path, const XmlText& text, UTF_ENCODINGS encoding, bool writeSignature)
{
    WriteRunsToFile(path, {text.Utf8()}, encoding, writeSignature);
}

void WriteRunsToFile(std::u16string_view path, TextRuns runs, UTF_ENCODINGS encoding, bool writeSignature)
{
    FileBytes bytes(std::move(runs), encoding, writeSignature);
    ThrowUnlessDone(zupm::ReplaceFileAtomically(path, bytes));
}

}  // namespace AdvXMLParser
