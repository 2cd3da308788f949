/// What a thread of the mix may do next.
#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Together.h"

namespace zupm::test {

/// One thread's dice.
using Random = std::mt19937;

/// A number from 0 to `count` - 1.
[[nodiscard]] inline std::size_t Pick(Random& random, std::size_t count)
{
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

/// Letters and a number, as a wide text.
template <class Number>
[[nodiscard]] std::u16string Numbered(std::u16string_view letters, Number number)
{
    return std::u16string(letters) + Utf16(std::to_string(number));
}

/// One operation with its check, and how often it comes beside the others.
struct MixStep {
    std::string name;
    int weight;
    std::function<void()> run;
};

}  // namespace zupm::test
