/// Names of elements, attributes and processing instructions.
#pragma once

#include <cstddef>
#include <string_view>

namespace AdvXMLParser {

/// How long the name at `at` is; 0 when there is none. The text ends in a zero byte, so that none reaches beyond it.
[[nodiscard]] std::size_t NameLengthAt(const char* at) noexcept;

}  // namespace AdvXMLParser
