#include <algorithm>
#include <array>
#include <optional>

#include "common/CzuLogger.h"
#include "text/Decimal.h"

namespace zupm {

namespace {

/// The most characters that a directive may ask for: a format can come from a resource module, so it is not trusted.
constexpr std::size_t kLargestWidth = 64;

/// A directive: `%`, an optional `0`, an optional width, and its kind.
struct Directive {
    std::size_t length = 0;  ///< 0 when the text is no directive
    std::size_t width = 0;
    char16_t fill = u' ';
    char16_t kind = 0;
};

Directive ReadDirective(std::u16string_view format, std::size_t at)
{
    Directive directive;
    std::size_t i = at + 1;
    if (i < format.size() && format[i] == u'0') {
        directive.fill = u'0';
        ++i;
    }
    for (; i < format.size() && format[i] >= u'0' && format[i] <= u'9'; ++i) {
        directive.width = std::min(kLargestWidth, directive.width * 10 + static_cast<std::size_t>(format[i] - u'0'));
    }
    constexpr std::u16string_view kKinds = u"sduxX%";
    if (i < format.size() && kKinds.find(format[i]) != kKinds.npos) {
        directive.kind = format[i];
        directive.length = i + 1 - at;
    }
    return directive;
}

std::u16string FormatHexadecimal(std::uint64_t value, bool upperCase)
{
    const std::u16string_view digits = upperCase ? u"0123456789ABCDEF" : u"0123456789abcdef";
    std::u16string text;
    do {
        text.push_back(digits[value % 16]);
        value /= 16;
    } while (value != 0);
    std::reverse(text.begin(), text.end());
    return text;
}

/// The bits of a number as %u and %x show them: a negative number that fits shows as its 32 bits, as result codes do.
std::uint64_t BitsOf(const LogArgument& argument)
{
    if (const auto* number = std::get_if<std::uint64_t>(&argument)) {
        return *number;
    }
    const std::int64_t number = std::get<std::int64_t>(argument);
    if (number < 0 && number >= INT32_MIN) {
        return static_cast<std::uint32_t>(number);
    }
    return static_cast<std::uint64_t>(number);
}

std::optional<std::u16string> FormatArgument(char16_t kind, const LogArgument& argument)
{
    if (const auto* text = std::get_if<std::u16string_view>(&argument)) {
        return kind == u's' ? std::optional<std::u16string>(*text) : std::nullopt;
    }
    switch (kind) {
        case u'd':
            return std::holds_alternative<std::int64_t>(argument) ? FormatSigned(std::get<std::int64_t>(argument))
                                                                  : FormatUnsigned(std::get<std::uint64_t>(argument));
        case u'u':
            return FormatUnsigned(BitsOf(argument));
        case u'x':
        case u'X':
            return FormatHexadecimal(BitsOf(argument), kind == u'X');
        default:
            return std::nullopt;
    }
}

void AppendPadded(std::u16string& out, std::u16string_view text, const Directive& directive)
{
    std::size_t padding = directive.width > text.size() ? directive.width - text.size() : 0;
    const char16_t fill = directive.kind == u's' ? u' ' : directive.fill;
    if (fill == u'0' && text.starts_with(u'-')) {
        out.push_back(u'-');
        text.remove_prefix(1);
    }
    out.append(padding, fill);
    out.append(text);
}

}  // namespace

std::u16string CzuLogger::Format(std::u16string_view format, std::span<const LogArgument> arguments)
{
    std::u16string out;
    std::size_t at = 0;
    while (at < format.size()) {
        const std::size_t percent = std::min(format.find(u'%', at), format.size());
        out.append(format, at, percent - at);
        at = percent;
        if (at == format.size()) {
            break;
        }
        const Directive directive = ReadDirective(format, at);
        const std::size_t length = std::max<std::size_t>(directive.length, 1);
        if (directive.kind == u'%') {
            out.push_back(u'%');
            at += length;
            continue;
        }
        std::optional<std::u16string> text;
        if (directive.length != 0 && !arguments.empty()) {
            text = FormatArgument(directive.kind, arguments.front());
            arguments = arguments.subspan(1);
        }
        if (text) {
            AppendPadded(out, *text, directive);
        } else {
            out.append(format, at, length);
        }
        at += length;
    }
    return out;
}

}  // namespace zupm
