#include "xml/FileBytes.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/Files.h"
#include "text/Transcode.h"
#include "xml/Encoding.h"
#include "xml/Exceptions.h"

namespace AdvXMLParser {

namespace {

/// A smaller run is collected with its neighbours, and a larger one is converted in such pieces.
constexpr std::size_t kPiece = std::size_t{128} << 10;

constinit std::size_t g_largestWritten = zupm::kLargestFile;

void ThrowUnlessLoadable(std::size_t size)
{
    if (size > g_largestWritten) {
        throw ReadWriteException(zupm::result::FileTooLarge);
    }
}

std::size_t SizeInUtf16(const TextRuns& runs) noexcept
{
    std::size_t units = 0;
    for (const std::string_view run : runs) {
        units += zupm::LengthInUtf16(run);
    }
    return units * sizeof(char16_t);
}

}  // namespace

FileBytes::FileBytes(TextRuns runs, UTF_ENCODINGS encoding, bool writeSignature)
    : m_runs(std::move(runs)),
      m_order(Utf16OrderOf(encoding)),
      m_signature(writeSignature ? SignatureOf(encoding) : std::string_view{})
{
    ThrowUnlessLoadable(SizeOf(m_runs));
    if (!HoldsEveryCharacter(encoding)) {
        m_isLatin1 = std::all_of(m_runs.begin(), m_runs.end(), zupm::FitsLatin1);
        if (!m_isLatin1) {
            ConvertWhole(encoding);
        }
    }
    ThrowUnlessLoadable(m_signature.size() + (m_order ? SizeInUtf16(m_runs) : SizeOf(m_runs)));
}

void FileBytes::ConvertWhole(UTF_ENCODINGS encoding)
{
    std::optional<std::string> bytes = Encode(Joined(m_runs), encoding, false);
    if (!bytes) {
        throw ReadWriteException(zupm::result::NotValidInItsEncoding);
    }
    m_whole = std::move(*bytes);
    m_runs.assign(1, m_whole);
}

std::string_view FileBytes::Next()
{
    m_buffer.assign(m_isBegun ? std::string_view{} : m_signature);
    m_isBegun = true;
    while (m_run < m_runs.size() && m_buffer.size() < kPiece) {
        const std::string_view run = m_runs[m_run].substr(m_at);
        if (!IsConverted() && run.size() >= kPiece) {
            if (!m_buffer.empty()) {
                break;
            }
            ++m_run;
            return run;
        }
        const std::string_view piece = zupm::PieceOfUtf8(run, kPiece);
        AppendConverted(piece);
        m_at += piece.size();
        if (piece.size() == run.size()) {
            ++m_run;
            m_at = 0;
        }
    }
    return m_buffer;
}

void FileBytes::Rewind() noexcept
{
    m_isBegun = false;
    m_run = 0;
    m_at = 0;
}

void FileBytes::AppendConverted(std::string_view piece)
{
    if (m_order) {
        zupm::AppendUtf16OfUtf8(piece, *m_order, m_buffer);
    } else if (m_isLatin1) {
        zupm::AppendLatin1OfUtf8(piece, m_buffer);
    } else {
        m_buffer.append(piece);
    }
}

void LimitWrittenFiles(std::size_t bytes) noexcept
{
    g_largestWritten = bytes;
}

}  // namespace AdvXMLParser
