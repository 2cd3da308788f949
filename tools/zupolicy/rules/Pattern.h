/// Regular expressions of rules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zupm::rules {

/// What is wrong with an expression, and the byte where.
struct PatternComplaint {
    std::size_t at;
    std::string message;
};

/// A set of characters: sorted or not, ranges may overlap.
struct CharacterSet {
    struct Range {
        char32_t first;
        char32_t last;
    };
    std::vector<Range> ranges;
    bool isNegated = false;

    [[nodiscard]] bool Has(char32_t character) const;
};

/// A step of the machine that an expression becomes.
struct PatternStep {
    enum class Kind : std::uint8_t { Character, Fork, Begin, End, WordEdge, NoWordEdge, Match };

    Kind kind;
    std::uint32_t set = 0;  ///< of a character
    std::uint32_t next = 0;
    std::uint32_t other = 0;  ///< the second way of a fork
};

/// A regular expression as JSON Schema uses them: those of ECMAScript without groups that look around or refer back.
/// Characters are those of Unicode.
///
/// Cost      In the worst case the length of the text times the length of the expression, and little memory: all ways
///           through the expression are followed at the same time, and none is ever taken back.
class Pattern {
public:
    /// UTF-8. Throws PatternComplaint.
    explicit Pattern(std::string_view expression);

    /// Whether a part of the text fits.
    [[nodiscard]] bool IsIn(std::string_view text) const;

private:
    std::vector<PatternStep> m_steps;  ///< begins with the first
    std::vector<CharacterSet> m_sets;
};

}  // namespace zupm::rules
