/// What the standard streams lead to.
#pragma once

namespace zupm::tool {

enum class StandardStream { Output, Error };

/// Whether a person reads the stream: it leads to a terminal that moves its cursor. On Windows the console is made to
/// take colours.
[[nodiscard]] bool IsTerminal(StandardStream stream) noexcept;

/// Whether the kind of terminal that the environment names takes colours. On Windows a missing TERM names every kind.
[[nodiscard]] bool TakesColours() noexcept;

}  // namespace zupm::tool
