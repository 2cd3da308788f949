/// Ends the program when a step fails: a benchmark of failures would measure nothing.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace zupm::bench {

inline void Demand(bool isDone, std::string_view step)
{
    if (!isDone) {
        std::fprintf(stderr, "%.*s failed\n", static_cast<int>(step.size()), step.data());
        std::exit(1);
    }
}

}  // namespace zupm::bench
