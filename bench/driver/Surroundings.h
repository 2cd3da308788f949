/// On what a run is measured.
#pragma once

#include <string>

namespace zupm::bench {

/// Processor and number of processors, compiler, peers. No name of the machine.
[[nodiscard]] std::string Surroundings();

}  // namespace zupm::bench
