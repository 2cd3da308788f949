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

/// A document's text as the bytes of a file, made piece by piece while they are written. UTF-8 is written out of the
/// document itself, UTF-16 is converted a piece at a time, and only ISO-8859-1 is converted whole: whether it can hold
/// a text is known at the end of the text, and must be known before the file is touched.
///
/// Lifetime  What the runs lie in must not change while it lives.
class FileBytes final : public zupm::ByteSource {
public:
    /// With `writeSignature` the signed encodings get their signature. Throws ReadWriteException: 0x80070459 when the
    /// encoding cannot hold a character of a name, comment, processing instruction or DOCTYPE (one of a value becomes a
    /// reference, and a CDATA section is split around it); 0x800700DF when the file, or its text as UTF-8, is too large
    /// to be read again.
    FileBytes(TextRuns runs, UTF_ENCODINGS encoding, bool writeSignature);

    [[nodiscard]] std::string_view Next() override;

private:
    void ConvertWhole(UTF_ENCODINGS encoding);

    TextRuns m_runs;
    std::size_t m_run = 0;                   ///< what is left of it comes next
    std::optional<zupm::ByteOrder> m_order;  ///< of UTF-16; the runs of every other encoding are its bytes
    std::string_view m_signature;            ///< empty once it is written
    std::string m_whole;
    std::string m_buffer;
};

/// Makes FileBytes refuse more than `bytes` instead of more than kLargestFile. For tests.
void LimitWrittenFiles(std::size_t bytes) noexcept;

}  // namespace AdvXMLParser
