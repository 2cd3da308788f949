/// The results as one table in Markdown.
#pragma once

#include <string>
#include <vector>

#include "bench/driver/Measure.h"

namespace zupm::bench {

void PrintTableHead();

/// A line for each peer, or one without a peer. A ratio above 1 says how many times as long, or as large, the peer is.
void PrintRow(const std::string& operation, const Contest& contest, const std::vector<Result>& results);

}  // namespace zupm::bench
