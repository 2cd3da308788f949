#include "xml/TagChecks.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace AdvXMLParser {

namespace {

constexpr std::string_view kPredefined[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
constexpr std::size_t kMostAttributes = 500'000;

}  // namespace

bool HasKnownReferencesOnly(std::string_view tag) noexcept
{
    for (std::size_t at = tag.find('&'); at != std::string_view::npos; at = tag.find('&', at + 1)) {
        const std::string_view rest = tag.substr(at);
        const bool isKnown =
            rest.starts_with("&#") || std::any_of(std::begin(kPredefined), std::end(kPredefined),
                                                  [&](auto entity) { return rest.starts_with(entity); });
        if (!isKnown) {
            return false;
        }
    }
    return true;
}

bool HasTooManyAttributes(std::string_view text) noexcept
{
    if (text.size() < 2 || text[0] != '<' || text[1] == '!' || text[1] == '?') {
        return false;
    }
    constexpr std::string_view kStops = "\"'>";
    std::size_t values = 0;
    for (std::size_t at = text.find_first_of(kStops); at != std::string_view::npos && text[at] != '>';) {
        const std::size_t close = text.find(text[at], at + 1);
        if (close == std::string_view::npos || ++values > kMostAttributes) {
            break;
        }
        at = text.find_first_of(kStops, close + 1);
    }
    return values > kMostAttributes;
}

}  // namespace AdvXMLParser
