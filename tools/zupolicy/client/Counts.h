/// How much a file has.
#pragma once

#include <cstddef>

namespace zupm::tool {

/// What lookups find, each once.
struct Counts {
    std::size_t policies = 0;
    std::size_t tasks = 0;
    std::size_t sections = 0;
    std::size_t settings = 0;
};

}  // namespace zupm::tool
