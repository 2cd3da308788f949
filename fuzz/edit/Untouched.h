/// The parts of a policy file that an edit must not change.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fuzz/edit/Known.h"

namespace zupm::fuzz {

struct Untouched {
    /// The other products and tasks, byte for byte, in document order.
    std::vector<std::string> entries;
    /// Everything outside of the known products and tasks, without white space, because an edit may change the layout.
    /// Elements that get stamps, and those that a new entry opens, count only with their content.
    std::string outside;

    friend bool operator==(const Untouched&, const Untouched&) = default;
};

[[nodiscard]] Untouched FindUntouched(std::u16string_view text, const Known& known);

}  // namespace zupm::fuzz
