#include "fuzz/support/Input.h"

#include <algorithm>

#include "text/Utf.h"

namespace zupm::fuzz {

namespace {

constexpr std::size_t kLongestText = 256;
constexpr std::size_t kCommonest = 6;

std::u16string UnitsOf(std::string_view bytes)
{
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[i]);
        const auto high = static_cast<unsigned char>(bytes[i + 1]);
        text += static_cast<char16_t>(high << 8 | low);
    }
    return text;
}

}  // namespace

std::u16string Input::Text(std::span<const std::u16string_view> usual)
{
    enum : std::uint8_t { Units, Utf8, Common, Usual = 5, Last = 7 };
    const std::uint8_t form = UpTo<std::uint8_t>(Last);
    if (form >= Common && !usual.empty()) {
        const std::size_t choices = form >= Usual ? usual.size() : std::min(usual.size(), kCommonest);
        return std::u16string(usual[UpTo(choices - 1)]);
    }
    const std::string bytes = Bytes(kLongestText);
    return form == Units ? UnitsOf(bytes) : ToUtf16Lossy(bytes);
}

}  // namespace zupm::fuzz
