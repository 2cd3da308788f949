#include "xml/Characters.h"

#include <algorithm>

#include "text/Utf.h"

namespace AdvXMLParser {

namespace {

constexpr bool IsForbiddenUnit(char16_t unit)
{
    return (unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit >= 0xFFFE;
}

constexpr bool IsPlainNameStart(char16_t unit)
{
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit == u'_';
}

constexpr bool IsPlainNameUnit(char16_t unit)
{
    return IsPlainNameStart(unit) || (unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u'.';
}

}  // namespace

bool IsXmlText(std::u16string_view text) noexcept
{
    return std::none_of(text.begin(), text.end(), IsForbiddenUnit) && zupm::FindInvalidUtf16(text) == zupm::kValid;
}

bool IsPlainName(std::u16string_view text) noexcept
{
    return !text.empty() && IsPlainNameStart(text.front()) && std::all_of(text.begin(), text.end(), IsPlainNameUnit);
}

}  // namespace AdvXMLParser
