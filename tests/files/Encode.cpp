#include "Encode.h"

#include <stdexcept>

#include "text/Utf.h"

namespace zupm::test {

namespace {

std::string AsUtf16(std::u16string_view text, bool bigEndian)
{
    std::string bytes;
    for (const char16_t unit : text) {
        const auto high = static_cast<char>(unit >> 8);
        const auto low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

std::string AsLatin1(std::u16string_view text)
{
    std::string bytes;
    for (const char16_t unit : text) {
        if (unit > 0xFF) {
            throw std::logic_error("not a Latin-1 text");
        }
        bytes += static_cast<char>(unit);
    }
    return bytes;
}

}  // namespace

std::string Encode(std::string_view utf8, Form form)
{
    const std::u16string text = ToUtf16(utf8).value();
    switch (form) {
        case Form::Utf8:
            return std::string(utf8);
        case Form::Utf8Signed:
            return "\xEF\xBB\xBF" + std::string(utf8);
        case Form::Utf16Le:
            return AsUtf16(text, false);
        case Form::Utf16LeSigned:
            return "\xFF\xFE" + AsUtf16(text, false);
        case Form::Utf16Be:
            return AsUtf16(text, true);
        case Form::Utf16BeSigned:
            return "\xFE\xFF" + AsUtf16(text, true);
        case Form::Latin1:
            return AsLatin1(text);
    }
    throw std::logic_error("no such form");
}

}  // namespace zupm::test
