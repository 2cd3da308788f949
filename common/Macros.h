/// Macro expansion of setting values.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zupm {

/// Replaces every `<open>Name<close>` whose name the process registered; everything else stays as it is. One pass: what
/// a macro expands to is not expanded again. `flags` and `context` are part of the call's shape and change nothing.
[[nodiscard]] std::u16string cmnlib_ExpandMacro(std::u16string_view text, std::u16string_view open,
                                                std::u16string_view close, int& flags, std::u16string_view context);

/// Registers (or replaces) a macro of this process; none is registered at first. Any thread may call it.
void RegisterMacro(std::u16string name, std::u16string value);
void UnregisterAllMacros();

}  // namespace zupm
