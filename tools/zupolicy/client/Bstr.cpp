#include "tools/zupolicy/client/Bstr.h"

#include <new>

namespace zupm::tool {

Bstr::Bstr(std::u16string_view text)
{
    // The wide character type differs between the targets, so the text is copied unit by unit, never cast.
    const std::basic_string<OLECHAR> units(text.begin(), text.end());
    m_text = SysAllocStringLen(units.data(), static_cast<UINT>(units.size()));
    if (m_text == nullptr) {
        throw std::bad_alloc();
    }
}

Bstr::~Bstr()
{
    SysFreeString(m_text);
}

std::u16string Bstr::Text() const
{
    return m_text == nullptr ? std::u16string() : std::u16string(m_text, m_text + SysStringLen(m_text));
}

}  // namespace zupm::tool
