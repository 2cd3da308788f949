/// The text encodings of XML files.
#pragma once

#include <cstdint>

namespace AdvXMLParser {

/// The encoding of a file. "Signed" files begin with its signature (byte order mark).
enum class UTF_ENCODINGS : std::int32_t {
    Utf16LittleEndianSigned = 1,
    Utf16BigEndianSigned = 2,
    Utf8Signed = 3,
    Utf8 = 4,
    Iso8859_1 = 5,
    Utf16LittleEndian = 6,  ///< without a signature; recognised by how "<?" begins the file
    Utf16BigEndian = 7,     ///< without a signature; recognised by how "<?" begins the file
};

inline constexpr UTF_ENCODINGS kLastEncoding = UTF_ENCODINGS::Utf16BigEndian;

}  // namespace AdvXMLParser
