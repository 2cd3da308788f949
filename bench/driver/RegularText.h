/// The text of policy files.
#pragma once

#include <string>

namespace zupm::bench {

/// A product of settings in sections of 50.
[[nodiscard]] std::string ProductText(int number, int settings);
[[nodiscard]] std::string TaskText(int number);

/// A whole file around products and tasks.
[[nodiscard]] std::string DocumentText(const std::string& encoding, const std::string& products,
                                       const std::string& tasks);

}  // namespace zupm::bench
