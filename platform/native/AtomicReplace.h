/// Replacing a file in one step.
#pragma once

#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Whether the new bytes survive a loss of power once the call returned. A reader sees the old or the new file in any
/// case.
enum class Durability { Flushed, LeftToTheSystem };

/// ReplaceFileAtomically of platform/Files.h with a choice. Throws std::bad_alloc, with the old file as it was.
[[nodiscard]] result::Code ReplaceFile(std::u16string_view path, std::string_view bytes, Durability durability);

}  // namespace zupm::native
