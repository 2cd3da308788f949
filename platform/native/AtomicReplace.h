/// Replacing a file in one step.
#pragma once

#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// Whether the new file survives a loss of power once the call returned, or the old one may come back. It is one of the
/// two in any case, for a reader and after a loss of power, and never a part of one.
enum class Durability { Flushed, LeftToTheSystem };

/// ReplaceFileAtomically of platform/Files.h with a choice. Throws std::bad_alloc, with the old file as it was.
[[nodiscard]] result::Code ReplaceFile(std::u16string_view path, std::string_view bytes, Durability durability);

}  // namespace zupm::native
