/// Products whose shape is left to chance, the same in every run.
#pragma once

#include <random>
#include <string>

namespace zupm::bench {

using Chance = std::mt19937;

/// Lengths, indentation and order of attributes by chance; comments, references and empty tags.
[[nodiscard]] std::string IrregularProductText(int number, Chance& chance);

/// Of the words in the values, 70 in 100 are not ASCII.
[[nodiscard]] std::string ForeignProductText(int number, Chance& chance);

}  // namespace zupm::bench
