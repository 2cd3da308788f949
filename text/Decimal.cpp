#include "text/Decimal.h"

#include <algorithm>
#include <limits>

namespace zupm {

namespace {

bool IsNumberBlank(char16_t unit)
{
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

std::u16string Format(std::uint64_t magnitude, bool negative)
{
    char16_t text[std::numeric_limits<std::uint64_t>::digits10 + 2];
    char16_t* const end = std::end(text);
    char16_t* at = end;
    do {
        *--at = static_cast<char16_t>(u'0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (negative) {
        *--at = u'-';
    }
    return {at, end};
}

}  // namespace

std::int64_t ParseInt64(std::u16string_view text) noexcept
{
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
    while (!text.empty() && IsNumberBlank(text.front())) {
        text.remove_prefix(1);
    }
    const bool negative = text.starts_with(u'-');
    if (negative || text.starts_with(u'+')) {
        text.remove_prefix(1);
    }
    // The smallest value's magnitude is one more than the largest value's.
    const std::uint64_t limit = negative ? kLargest + 1 : kLargest;
    std::uint64_t magnitude = 0;
    for (const char16_t unit : text) {
        if (unit < u'0' || unit > u'9') {
            break;
        }
        const auto digit = static_cast<std::uint64_t>(unit - u'0');
        if (magnitude > (limit - digit) / 10) {
            magnitude = limit;
            break;
        }
        magnitude = magnitude * 10 + digit;
    }
    return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

std::int32_t ParseInt32(std::u16string_view text) noexcept
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(ParseInt64(text), Limits::min(), Limits::max()));
}

std::u16string FormatUnsigned(std::uint64_t value)
{
    return Format(value, false);
}

std::u16string FormatSigned(std::int64_t value)
{
    const auto bits = static_cast<std::uint64_t>(value);
    return value < 0 ? Format(0 - bits, true) : Format(bits, false);
}

}  // namespace zupm
