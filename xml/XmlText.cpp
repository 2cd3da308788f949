#include "xml/XmlText.h"

#include <utility>

#include "text/Utf.h"

namespace AdvXMLParser {

XmlText::XmlText(std::string utf8, std::optional<UTF_ENCODINGS> encoding) noexcept
    : m_utf8(std::move(utf8)), m_encoding(encoding)
{
}

std::u16string XmlText::Wide() const
{
    return zupm::ToUtf16(m_utf8).value_or(std::u16string());
}

}  // namespace AdvXMLParser
