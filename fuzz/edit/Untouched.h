/// The parts of a policy file that an edit has nothing to do with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fuzz/edit/Known.h"

namespace zupm::fuzz {

/// The texts of all products and tasks that are not among `known`, byte for byte as they stand in a document, in
/// document order.
[[nodiscard]] std::vector<std::string> UntouchedTexts(std::u16string_view text, const Known& known);

}  // namespace zupm::fuzz
