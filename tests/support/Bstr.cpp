#include "tests/support/Bstr.h"

#include <cstring>
#include <new>

#include "text/Utf.h"

namespace zupm::test {

static_assert(sizeof(OLECHAR) == sizeof(char16_t));

std::u16string Text(BSTR text)
{
    std::u16string copy(SysStringLen(text), u'\0');
    if (!copy.empty()) {
        std::memcpy(copy.data(), text, copy.size() * sizeof(char16_t));
    }
    return copy;
}

BSTR NewString(std::u16string_view text)
{
    const BSTR created = SysAllocStringLen(nullptr, static_cast<UINT>(text.size()));
    if (created == nullptr) {
        throw std::bad_alloc();
    }
    if (!text.empty()) {
        std::memcpy(created, text.data(), text.size() * sizeof(char16_t));
    }
    return created;
}

std::string Utf8(std::u16string_view text)
{
    return ToUtf8Lossy(text);
}

std::u16string Utf16(std::string_view text)
{
    return ToUtf16(text).value();
}

}  // namespace zupm::test
