#include "xml/FileBytes.h"

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
        ConvertWhole(encoding);
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
    m_buffer.assign(std::exchange(m_signature, {}));
    while (m_run < m_runs.size() && m_buffer.size() < kPiece) {
        std::string_view& run = m_runs[m_run];
        if (!m_order && run.size() >= kPiece) {
            if (!m_buffer.empty()) {
                break;
            }
            ++m_run;
            return run;
        }
        const std::string_view piece = zupm::PieceOfUtf8(run, kPiece);
        if (m_order) {
            zupm::AppendUtf16OfUtf8(piece, *m_order, m_buffer);
        } else {
            m_buffer.append(piece);
        }
        run.remove_prefix(piece.size());
        if (run.empty()) {
            ++m_run;
        }
    }
    return m_buffer;
}

void LimitWrittenFiles(std::size_t bytes) noexcept
{
    g_largestWritten = bytes;
}

}  // namespace AdvXMLParser
