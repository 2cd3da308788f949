/// Edits of expected texts.
#pragma once

#include <string>
#include <string_view>

namespace zupm::test {

/// `text` with its one occurrence of `from` replaced; throws std::logic_error when there is none or more than one.
[[nodiscard]] std::string ReplaceOnce(std::string text, std::string_view from, std::string_view to);

/// `text` with every occurrence of `from` replaced.
[[nodiscard]] std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);

}  // namespace zupm::test
