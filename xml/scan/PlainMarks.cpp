#include "xml/scan/PlainMarks.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "xml/scan/CharacterCheck.h"

namespace AdvXMLParser {

namespace {

enum class Kind : std::uint8_t { Plain, Mark, Check };

/// Bytes that need a look: control characters and what is not ASCII.
constexpr std::array<Kind, 256> KindsOfBytes()
{
    std::array<Kind, 256> kinds{};
    for (std::size_t byte = 0; byte < kinds.size(); ++byte) {
        kinds[byte] = byte < 0x20 || byte >= 0x80 ? Kind::Check : Kind::Plain;
    }
    for (const char mark : std::string_view("<>&\"'")) {
        kinds[static_cast<unsigned char>(mark)] = Kind::Mark;
    }
    return kinds;
}
constexpr std::array<Kind, 256> kKinds = KindsOfBytes();

constexpr Kind KindOf(char byte)
{
    return kKinds[static_cast<unsigned char>(byte)];
}

}  // namespace

std::uint32_t* FindMarksPlainly(const TextPiece& piece, std::uint32_t* marks) noexcept
{
    const char* const end = piece.text + piece.end;
    for (const char* at = BeginOfCharacterAcross(piece.text, piece.text + piece.begin); at < end;) {
        const Kind kind = KindOf(*at);
        // Written in any case and kept when it is a mark: a branch would often be mispredicted.
        *marks = static_cast<std::uint32_t>(at - piece.text);
        marks += kind == Kind::Mark ? 1 : 0;
        const std::uint32_t length = kind == Kind::Check ? CharacterLengthAt(at) : 1;
        if (length == 0) {
            return nullptr;
        }
        at += length;
    }
    return marks;
}

}  // namespace AdvXMLParser
