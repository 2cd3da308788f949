#include "xml/Utf16.h"

#include <utility>

#include "text/Transcode.h"

namespace AdvXMLParser {

namespace {

using zupm::ByteOrder;

bool Decode(std::string& bytes, ByteOrder order)
{
    std::string utf8;
    // What nearly every file takes. Memory that stays unused costs nothing.
    utf8.reserve(bytes.size() / 2 + bytes.size() / 32);
    const bool isValid = zupm::AppendUtf8OfUtf16(bytes, order, utf8) == bytes.size();
    bytes = std::move(utf8);
    return isValid;
}

void Encode(std::string& text, std::string_view signature, ByteOrder order)
{
    std::string bytes;
    bytes.reserve(signature.size() + sizeof(char16_t) * zupm::LengthInUtf16(text));
    bytes.append(signature);
    zupm::AppendUtf16OfUtf8(text, order, bytes);
    text = std::move(bytes);
}

}  // namespace

bool DecodeUtf16LittleEndian(std::string& bytes)
{
    return Decode(bytes, ByteOrder::LittleEndian);
}

bool DecodeUtf16BigEndian(std::string& bytes)
{
    return Decode(bytes, ByteOrder::BigEndian);
}

bool EncodeUtf16LittleEndian(std::string& text, std::string_view signature)
{
    Encode(text, signature, ByteOrder::LittleEndian);
    return true;
}

bool EncodeUtf16BigEndian(std::string& text, std::string_view signature)
{
    Encode(text, signature, ByteOrder::BigEndian);
    return true;
}

}  // namespace AdvXMLParser
