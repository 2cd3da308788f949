#include "platform/xml/FileBuffer.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/Files.h"
#include "platform/xml/Encoding.h"
#include "platform/xml/Exceptions.h"

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
    std::optional<XmlText> text = Decode(std::move(bytes), actual);
    if (!text) {
        throw ReadWriteException(zupm::result::NotValidInItsEncoding);
    }
    buffer = std::move(*text);
    encoding = actual;
}

std::string EncodeBuffer(XmlText text, UTF_ENCODINGS encoding, bool writeSignature)
{
    if (encoding == UTF_ENCODINGS::Utf8) {
        return std::move(text).TakeUtf8();
    }
    std::optional<std::string> bytes = Encode(text.Utf8(), encoding, writeSignature);
    if (!bytes) {
        throw ReadWriteException(zupm::result::NotValidInItsEncoding);
    }
    return *std::move(bytes);
}

void WriteBufferToFile(std::u16string_view path, const XmlText& text, UTF_ENCODINGS encoding, bool writeSignature)
{
    if (encoding == UTF_ENCODINGS::Utf8) {
        ThrowUnlessDone(zupm::ReplaceFileAtomically(path, text.Utf8()));
        return;
    }
    const std::optional<std::string> bytes = Encode(text.Utf8(), encoding, writeSignature);
    if (!bytes) {
        throw ReadWriteException(zupm::result::NotValidInItsEncoding);
    }
    ThrowUnlessDone(zupm::ReplaceFileAtomically(path, *bytes));
}

}  // namespace AdvXMLParser
