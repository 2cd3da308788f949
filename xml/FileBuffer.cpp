#include "xml/FileBuffer.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/Files.h"
#include "xml/Encoding.h"
#include "xml/Exceptions.h"

namespace AdvXMLParser {

namespace {

constinit std::size_t g_largestWritten = zupm::kLargestFile;

void ThrowUnlessDone(zupm::result::Code code)
{
    if (code < 0) {
        throw ReadWriteException(code);
    }
}

void ThrowUnlessLoadable(std::size_t size)
{
    if (size > g_largestWritten) {
        throw ReadWriteException(zupm::result::FileTooLarge);
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
    std::optional<XmlText> text = Decode(std::move(bytes), actual, &invalid);
    if (!text) {
        throw InvalidTextException(zupm::result::NotValidInItsEncoding, invalid.line, invalid.column);
    }
    buffer = std::move(*text);
    encoding = actual;
}

std::string BytesToWrite(XmlText text, UTF_ENCODINGS encoding, bool writeSignature)
{
    ThrowUnlessLoadable(text.Utf8().size());
    std::optional<std::string> bytes = Encode(std::move(text).TakeUtf8(), encoding, writeSignature);
    if (!bytes) {
        throw ReadWriteException(zupm::result::NotValidInItsEncoding);
    }
    ThrowUnlessLoadable(bytes->size());
    return std::move(*bytes);
}

void WriteBufferToFile(std::u16string_view path, XmlText text, UTF_ENCODINGS encoding, bool writeSignature)
{
    ThrowUnlessDone(zupm::ReplaceFileAtomically(path, BytesToWrite(std::move(text), encoding, writeSignature)));
}

void LimitWrittenFiles(std::size_t bytes) noexcept
{
    g_largestWritten = bytes;
}

}  // namespace AdvXMLParser
