/// Colours for people.
#pragma once

#include "tools/zupolicy/client/Terminal.h"

namespace zupm::tool {

/// Whether what goes to the stream gets colours: it is a terminal, NO_COLOR is not set and TERM is not "dumb".
[[nodiscard]] bool HasColour(StandardStream stream);

}  // namespace zupm::tool
