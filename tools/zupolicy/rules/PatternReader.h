/// Regular expressions as trees.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "tools/zupolicy/rules/Pattern.h"

namespace zupm::rules {

/// A part of an expression.
struct PatternNode {
    enum class Kind : std::uint8_t { Set, Begin, End, WordEdge, NoWordEdge, Sequence, Choice, Repeat };

    static constexpr std::uint32_t kNoLimit = UINT32_MAX;

    Kind kind = Kind::Sequence;
    CharacterSet set;
    std::vector<PatternNode> parts;
    std::uint32_t least = 0;  ///< of a repeat
    std::uint32_t most = 0;
};

/// Reads an expression (UTF-8). Throws PatternComplaint.
[[nodiscard]] PatternNode ReadPattern(std::string_view expression);

}  // namespace zupm::rules
