/// Replacing one file in one step.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "zuPolicyManager/Results.h"

namespace zupm::win32 {

/// Waits that grow, for about a second in all: how long another process may keep a file to itself.
class Patience {
public:
    /// Sleeps once; false, without sleeping, when the second is over.
    [[nodiscard]] bool Wait() noexcept;

private:
    std::uint32_t m_waited = 0;
    std::uint32_t m_next = 5;
};

/// ReplaceFileAtomically for a path in its full form; may throw std::bad_alloc.
[[nodiscard]] result::Code ReplaceFull(const std::u16string& full, std::string_view bytes);

}  // namespace zupm::win32
