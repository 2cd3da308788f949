// Encodings: wrong declarations, and bytes that are not text.
#include <string>

#include "tests/files/Encode.h"
#include "tests/limits/Attack.h"
#include "text/Utf.h"

namespace zupm::test {

namespace {

std::string Document(std::string_view declaration, std::size_t size, std::string_view last = "")
{
    return std::string(declaration) + "<F>" + std::string(size, 'x') + std::string(last) + "</F>";
}

std::string Declared(std::string_view encoding)
{
    return "<?xml version='1.0' encoding='" + std::string(encoding) + "'?>";
}

std::string Utf16DeclaredInUtf8(std::size_t size)
{
    return Document(Declared("UTF-16"), size);
}

std::string Latin1DeclaredBehindUtf8Signature(std::size_t size)
{
    return Encode(Document(Declared("ISO-8859-1"), size), Form::Utf8Signed);
}

std::string Utf8DeclaredInUtf16(std::size_t size)
{
    return Encode(Document(Declared("UTF-8"), size / 2), Form::Utf16LeSigned);
}

std::string BigEndianDeclaredInLittleEndian(std::size_t size)
{
    return Encode(Document(Declared("UTF-16BE"), size / 2), Form::Utf16LeSigned);
}

std::string Utf16WithoutSignatureAndDeclaration(std::size_t size)
{
    return Encode(Document("", size / 2), Form::Utf16Le);
}

std::string Utf7(std::size_t size)
{
    return Document(Declared("UTF-7"), size, "+ADw-");
}

std::string Utf32LittleEndian(std::size_t size)
{
    std::string bytes("\xFF\xFE\0\0", 4);
    for (const char c : Document("", size / 4)) {
        bytes.append(1, c).append(3, '\0');
    }
    return bytes;
}

std::string Utf32BigEndian(std::size_t size)
{
    std::string bytes("\0\0\xFE\xFF", 4);
    for (const char c : Document("", size / 4)) {
        bytes.append(3, '\0').append(1, c);
    }
    return bytes;
}

std::string Ebcdic(std::size_t size)
{
    return "\x4C\x6F\xA7\x94\x93" + std::string(size, '\x81');
}

std::string OverlongAtTheEnd(std::size_t size)
{
    return Document("", size, "\xC0\xBC");
}

std::string SurrogateInUtf8AtTheEnd(std::size_t size)
{
    return Document("", size, "\xED\xA0\x80");
}

std::string BeyondUnicodeAtTheEnd(std::size_t size)
{
    return Document("", size, "\xF4\x90\x80\x80");
}

std::string CharacterCutShort(std::size_t size)
{
    return std::string(size, 'x') + "\xF0\x9F\x98";
}

std::string LoneSurrogateInUtf16(std::size_t size)
{
    std::string bytes = Encode(Document("", size / 2), Form::Utf16LeSigned);
    bytes.replace(bytes.size() / 4 * 2, 2, "\x00\xD8", 2);
    return bytes;
}

/// A conversion in pieces must not cut a pair.
std::string Utf16OfPairs(std::size_t size)
{
    return Encode("<F>" + Repeated("\U0001F600", size) + "</F>", Form::Utf16LeSigned);
}

std::string OddLengthOfUtf16(std::size_t size)
{
    return Encode(Document("", size / 2), Form::Utf16BeSigned) + "x";
}

/// Every byte becomes two in the document.
std::string Latin1OfHighLetters(std::size_t size)
{
    return Declared("ISO-8859-1") + "<F>" + std::string(size, '\xE4') + "</F>";
}

std::string Zeros(std::size_t size)
{
    return std::string(size, '\0');
}

std::string ZeroAtTheEnd(std::size_t size)
{
    return Document("", size, std::string_view("\0", 1));
}

std::string ControlCharacters(std::size_t size)
{
    return Document("", size, "\x1B");
}

std::string ReferenceToNothing(std::size_t size)
{
    return Document("", size, "&#0;");
}

std::string ReferenceBeyondUnicode(std::size_t size)
{
    return Document("", 0, "&#x" + std::string(size, 'F') + ";");
}

constexpr Attack kAttacks[] = {
    {"UTF-16 declared in UTF-8", Utf16DeclaredInUtf8, LoadOnly, result::SyntaxError},
    {"ISO-8859-1 declared behind a UTF-8 signature", Latin1DeclaredBehindUtf8Signature, LoadOnly, result::SyntaxError},
    {"UTF-8 declared in UTF-16", Utf8DeclaredInUtf16, LoadOnly, result::SyntaxError},
    {"UTF-16BE declared in UTF-16LE", BigEndianDeclaredInLittleEndian, LoadOnly, result::SyntaxError},
    {"UTF-16 without signature and declaration", Utf16WithoutSignatureAndDeclaration, LoadOnly, result::SyntaxError},
    {"UTF-7", Utf7, LoadOnly, result::SyntaxError},
    {"UTF-32LE", Utf32LittleEndian, LoadOnly, result::SyntaxError},
    {"UTF-32BE", Utf32BigEndian, LoadOnly, result::NotValidInItsEncoding},
    {"EBCDIC", Ebcdic, LoadOnly, result::NotValidInItsEncoding},
    {"overlong form at the end", OverlongAtTheEnd, LoadOnly, result::NotValidInItsEncoding},
    {"surrogate in UTF-8 at the end", SurrogateInUtf8AtTheEnd, LoadOnly, result::NotValidInItsEncoding},
    {"beyond U+10FFFF at the end", BeyondUnicodeAtTheEnd, LoadOnly, result::NotValidInItsEncoding},
    {"character cut short", CharacterCutShort, LoadOnly, result::NotValidInItsEncoding},
    {"lone surrogate in UTF-16", LoneSurrogateInUtf16, LoadOnly, result::NotValidInItsEncoding},
    {"UTF-16 of surrogate pairs", Utf16OfPairs, LoadAndWrite, result::Success, 2},
    {"odd length of UTF-16", OddLengthOfUtf16, LoadOnly, result::NotValidInItsEncoding},
    {"ISO-8859-1 of high letters", Latin1OfHighLetters, LoadAndWrite, result::Success, 2},
    {"zeros", Zeros, LoadOnly, result::SyntaxError},
    {"zero at the end", ZeroAtTheEnd, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
    {"control character", ControlCharacters, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
    {"reference to U+0000", ReferenceToNothing, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
    {"reference beyond U+10FFFF", ReferenceBeyondUnicode, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
};

}  // namespace

std::span<const Attack> EncodingAttacks()
{
    return kAttacks;
}

}  // namespace zupm::test
