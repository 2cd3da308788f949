/// The component's lines in the agent's log.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/CzuLogger.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// The subsystem under which everything of the component is logged.
inline constexpr std::uint32_t kLogSubsystem = 0x800;

/// Level 1: an unexpected exception ended an operation, given as "CClass::Method()". The text comes from the resource
/// module; without one the line is the operation alone.
void LogException(std::u16string_view operation) noexcept;

/// Level 1: a platform error ended an operation. Without the resource module the line has the three values alone.
void LogPlatformError(std::u16string_view operation, result::Code code, std::u16string_view description) noexcept;

/// Level 7: a document could not be read or parsed.
void LogFailure(std::u16string_view text) noexcept;

/// Level 7, two lines: the place where an operation ("CClass::Initialize()") could not parse its text, and that loading
/// failed there.
void LogParseFailure(std::u16string_view operation, std::int64_t line, std::int64_t column) noexcept;

/// Level 8: a duplicate key was skipped while indexing. The arguments are the keys for the format's %s, in full
/// length, so that a reader of the log can find them in the file.
template <class... Keys>
void LogDuplicate(std::u16string_view format, const Keys&... keys) noexcept
{
    CzuLogger::AddMessageW(kLogSubsystem, kLogDuplicate, format, std::u16string_view(keys)...);
}

/// To be called while an exception is handled: OutOfMemory for std::bad_alloc; anything else is logged by LogException
/// and gives Unexpected.
[[nodiscard]] result::Code CodeOfCurrentException(std::u16string_view operation) noexcept;

}  // namespace zupm
