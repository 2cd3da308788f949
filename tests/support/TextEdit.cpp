#include "tests/support/TextEdit.h"

#include <stdexcept>

namespace zupm::test {

std::string ReplaceOnce(std::string text, std::string_view from, std::string_view to)
{
    const std::size_t at = text.find(from);
    if (at == std::string::npos || text.find(from, at + 1) != std::string::npos) {
        throw std::logic_error("not there exactly once: " + std::string(from));
    }
    return text.replace(at, from.size(), to);
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to)
{
    std::string result;
    std::size_t begin = 0;
    for (std::size_t at = text.find(from); at != std::string_view::npos; at = text.find(from, begin)) {
        result += text.substr(begin, at - begin);
        result += to;
        begin = at + from.size();
    }
    return result.append(text.substr(begin));
}

}  // namespace zupm::test
