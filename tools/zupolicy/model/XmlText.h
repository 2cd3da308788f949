/// What XML can hold.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zupm::model {

/// What is wrong with a text for XML 1.0, such as "holds a character that XML cannot hold: U+0001, character 3";
/// nothing for a text that it can hold. What is not valid UTF-8 is no matter of this.
[[nodiscard]] std::optional<std::string> ComplaintOfXml(std::string_view text);

}  // namespace zupm::model
