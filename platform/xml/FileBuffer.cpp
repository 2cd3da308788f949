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
    const UTF_ENCODINGS actual = detect ? DetectEncoding(bytes) : encoding;
    std::optional<XmlText> text = TryDecode(bytes, actual);
    if (!text) {
        const Position position = PositionOfInvalid(bytes, actual);
        throw InvalidTextException(zupm::result::NotValidInItsEncoding, position.line, position.column);
    }
    buffer = std::move(*text);
    encoding = actual;
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
