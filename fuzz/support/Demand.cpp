#include "fuzz/support/Demand.h"

#include <cstdio>
#include <cstdlib>

namespace zupm::fuzz {

void ReportBroken(std::string_view promise, std::string_view detail)
{
    std::fprintf(stderr, "BROKEN: %.*s\n%.*s\n", static_cast<int>(promise.size()), promise.data(),
                 static_cast<int>(detail.size()), detail.data());
    std::abort();
}

}  // namespace zupm::fuzz
