#include "tests/support/Bstr.h"

#include "text/Utf.h"

namespace zupm::test {

std::string Utf8(std::u16string_view text)
{
    return ToUtf8Lossy(text);
}

std::u16string Utf16(std::string_view text)
{
    return ToUtf16(text).value();
}

}  // namespace zupm::test
