/// How deep a document knows its elements.
#pragma once

#include <cstdint>
#include <limits>

namespace AdvXMLParser {

/// The number of levels whose elements a document is asked for; the document element is on level 1. Everything below
/// is checked as well, but need not be known as elements: reading finds no children in an element of the last level.
/// Its text, a copy of it and every edit are what they are when all levels are known.
inline constexpr std::uint32_t kAllLevels = std::numeric_limits<std::uint32_t>::max();

}  // namespace AdvXMLParser
