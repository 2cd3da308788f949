#include "xml/XmlText.h"

#include <utility>

#include "text/Utf.h"

namespace AdvXMLParser {

XmlText::XmlText(std::string utf8, std::optional<UTF_ENCODINGS> encoding) noexcept
    : m_utf8(std::move(utf8)), m_encoding(encoding)
{
}

XmlText XmlText::Unchecked(std::string bytes, UTF_ENCODINGS encoding) noexcept
{
    XmlText text(std::move(bytes), encoding);
    text.m_isChecked = false;
    return text;
}

std::u16string XmlText::Wide() const
{
    return zupm::ToUtf16(m_utf8).value_or(std::u16string());
}

}  // namespace AdvXMLParser
