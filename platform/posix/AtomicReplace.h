/// Replacing a file in one step.
#pragma once

#include <string_view>

#include "platform/posix/Replacement.h"
#include "zuPolicyManager/Results.h"

namespace zupm::native {

/// ReplaceFileAtomically of platform/Files.h with a choice. Throws std::bad_alloc, with the old file as it was.
[[nodiscard]] result::Code ReplaceFile(std::u16string_view path, std::string_view bytes, Durability durability);

}  // namespace zupm::native
