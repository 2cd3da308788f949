/// Lines of text files, taken apart.
#pragma once

#include <charconv>
#include <string_view>

namespace zupm::native {

/// Takes the text before the first separator, and the separator, off the front; the whole text when it has none.
[[nodiscard]] inline std::string_view TakeUpTo(std::string_view& text, char separator)
{
    const std::size_t end = text.find(separator);
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    return taken;
}

/// Reads a number that takes all of a text; false when the text is none.
template <class Number>
[[nodiscard]] bool ReadNumber(std::string_view digits, int base, Number& number)
{
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
    return error == std::errc() && stop == end;
}

}  // namespace zupm::native
