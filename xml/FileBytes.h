/// The bytes of a file that is written.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ByteSource.h"
#include "text/Utf16Bytes.h"
#include "xml/TextRuns.h"
#include "xml/UtfEncodings.h"

namespace AdvXMLParser {

/// A document's text as the bytes of a file, made piece by piece while a file is written or compared. UTF-8 is taken
/// out of the document itself; UTF-16 is converted a piece at a time, and so is ISO-8859-1 when it has every character.
/// Otherwise the text is converted whole: whether references can replace what is missing is known at the end of the
/// text, and must be known before a file is touched.
///
/// The text that was read from a file gives back that file's bytes, in its encoding and with its signature: each
/// encoding has one way to write a text that it holds.
///
/// Lifetime  What the runs lie in must not change while it lives.
class FileBytes final : public zupm::RepeatableBytes {
public:
    /// With `writeSignature` the signed encodings get their signature. Throws ReadWriteException: 0x80070459 when the
    /// encoding cannot hold a character of a name, comment, processing instruction or DOCTYPE (one of a value becomes a
    /// reference, and a CDATA section is split around it); 0x800700DF when the file, or its text as UTF-8, is too large
    /// to be read again.
    FileBytes(TextRuns runs, UTF_ENCODINGS encoding, bool writeSignature);

    [[nodiscard]] std::string_view Next() override;
    void Rewind() noexcept override;

private:
    void ConvertWhole(UTF_ENCODINGS encoding);
    [[nodiscard]] bool IsConverted() const noexcept { return m_order || m_isLatin1; }
    void AppendConverted(std::string_view piece);

    TextRuns m_runs;
    std::optional<zupm::ByteOrder> m_order;  ///< of UTF-16
    bool m_isLatin1 = false;                 ///< the runs are converted; if neither, they are the bytes
    std::string_view m_signature;
    bool m_isBegun = false;  ///< the signature was given
    std::size_t m_run = 0;   ///< comes next
    std::size_t m_at = 0;    ///< where in it
    std::string m_whole;
    std::string m_buffer;
};

/// Makes FileBytes refuse more than `bytes` instead of more than kLargestFile. For tests.
void LimitWrittenFiles(std::size_t bytes) noexcept;

}  // namespace AdvXMLParser
