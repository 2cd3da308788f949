/// What a measured process does: one operation, again and again.
#pragma once

#include <functional>
#include <string>

#include "bench/Demand.h"

namespace zupm::bench {

/// What the caller of the process names.
struct Subject {
    std::string contender;  ///< who does it
    std::string file;
    int number = 0;  ///< a product, or a count; each operation says which
};

struct Operation {
    std::function<void()> run;
    int repetitions = 1;  ///< in one sample, so that a sample is long enough for the clock
};

/// Prepares an operation; what it prepares is not measured.
using PrepareOperation = Operation (*)(const Subject& subject);

/// Uses a result, so that the compiler cannot drop the work for it.
template <class Value>
void Use(const Value& value) noexcept
{
    asm volatile("" : : "r"(&value) : "memory");
}

/// Takes `warm` samples that do not count and then `counted` ones. Prints the seconds of each, a line for each, and the
/// peak of the resident memory in bytes on the last line.
void PrintSamples(const Operation& operation, int warm, int counted);

/// From here on the heap gives nothing back to the system: a sample after the first ones takes no page faults for it.
void KeepTheHeap() noexcept;

}  // namespace zupm::bench
