/// Patterns of names.
#pragma once

#include <string_view>

namespace zupm::model {

/// Whether a text matches a pattern as a whole: `*` stands for any number of characters, `?` for one. Upper and lower
/// case differ. Both are UTF-8.
[[nodiscard]] bool Matches(std::string_view pattern, std::string_view text);

}  // namespace zupm::model
