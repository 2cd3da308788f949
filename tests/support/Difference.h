/// The lines by which two texts differ.
#pragma once

#include <string>
#include <string_view>

namespace zupm::test {

/// One line for each line that was removed ("- ...") or added ("+ ..."), in order, by a longest common subsequence;
/// empty when the texts are the same. Lines are compared with their ends. A line ends with LF; what else a line holds
/// or lacks is shown: CR as "\r", tab as "\t", other control characters as "\x1f", a missing line end as "\(no line
/// end)".
[[nodiscard]] std::string Difference(std::string_view before, std::string_view after);

/// The same for wide texts, shown as UTF-8.
[[nodiscard]] std::string Difference(std::u16string_view before, std::u16string_view after);

}  // namespace zupm::test
