/// Stage one in plain C++.
#pragma once

#include "xml/scan/MarkFinder.h"

namespace AdvXMLParser {

/// As MarkFinder::Find. The forms with vectors leave to it what is shorter than one of their blocks.
[[nodiscard]] std::uint32_t* FindMarksPlainly(const TextPiece& piece, std::uint32_t* marks) noexcept;

}  // namespace AdvXMLParser
