#include "xml/ExpatWindow.h"

#include <new>

#include "text/Utf16Bytes.h"

namespace AdvXMLParser {

namespace {

/// Fed first: Expat then reads the text as UTF-8, whatever its first characters look like.
constexpr std::string_view kSignature = zupm::kUtf8Signature;

}  // namespace

ExpatWindow::ExpatWindow(std::uint32_t start, std::string_view openTags)
    : m_parser(XML_ParserCreate("UTF-8")),
      m_start(start),
      m_ownBytes(static_cast<std::int64_t>(kSignature.size() + openTags.size()))
{
    // An earlier parser accepted these tags, so only a lack of memory can make this fail.
    if (!m_parser || !Feed(kSignature, false) || !Feed(openTags, false)) {
        throw std::bad_alloc();
    }
}

std::uint32_t ExpatWindow::Offset() const noexcept
{
    const auto index = static_cast<std::int64_t>(XML_GetCurrentByteIndex(Parser()));
    return index < m_ownBytes ? m_start : static_cast<std::uint32_t>(m_start + index - m_ownBytes);
}

std::uint32_t ExpatWindow::Length() const noexcept
{
    return static_cast<std::uint32_t>(XML_GetCurrentByteCount(Parser()));
}

// NOLINTNEXTLINE(readability-make-member-function-const): it moves the parser on
bool ExpatWindow::Feed(std::string_view piece, bool isLast) noexcept
{
    return XML_Parse(Parser(), piece.data(), static_cast<int>(piece.size()), isLast ? 1 : 0) == XML_STATUS_OK;
}

}  // namespace AdvXMLParser
