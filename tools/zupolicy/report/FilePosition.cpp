#include "tools/zupolicy/report/FilePosition.h"

#include <charconv>

namespace zupm::tool {
namespace {

/// Takes "123:" off the front; nothing when the text does not begin like that.
std::optional<std::uint64_t> TakeNumber(std::string_view& text)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (error != std::errc() || length == text.size() || *end != ':') {
        return std::nullopt;
    }
    text.remove_prefix(length + 1);
    return number;
}

}  // namespace

FilePosition SplitPosition(std::string_view file, std::string_view text)
{
    FilePosition whole{{}, {}, std::string(text)};
    if (text.substr(0, file.size()) != file || text.substr(file.size(), 1) != ":") {
        return whole;
    }
    text.remove_prefix(file.size() + 1);
    const auto line = TakeNumber(text);
    const auto column = line ? TakeNumber(text) : std::nullopt;
    if (!column) {
        return whole;
    }
    return {line, column, std::string(text.substr(text.find_first_not_of(' ') == 1 ? 1 : 0))};
}

}  // namespace zupm::tool
