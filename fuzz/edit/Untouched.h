/// The parts of a policy file that an edit has nothing to do with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fuzz/edit/Known.h"

namespace zupm::fuzz {

struct Untouched {
    /// The products and tasks that are not among the known, byte for byte, in document order.
    std::vector<std::string> entries;
    /// Everything outside of the known ones, without white space: layout may follow an edit. Of the elements that get
    /// stamps, and of those that a new entry opens, only what they hold is here.
    std::string outside;

    friend bool operator==(const Untouched&, const Untouched&) = default;
};

[[nodiscard]] Untouched FindUntouched(std::u16string_view text, const Known& known);

}  // namespace zupm::fuzz
