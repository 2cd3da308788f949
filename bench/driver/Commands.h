/// Contenders that are measured in processes of their own.
#pragma once

#include <initializer_list>
#include <string>

#include "bench/driver/Measure.h"
#include "bench/driver/Process.h"
#include "bench/driver/SampleFiles.h"

namespace zupm::bench {

/// What the command line says.
struct Setup {
    std::string programs;  ///< the folder of the measured programs
    std::string other;     ///< the folder of another build of the component, which replaces every peer; may be empty
    bool isQuick = false;
};

/// Kept: one process takes several samples, the first ones for nothing, and its heap gives nothing back. Fresh: a new
/// process for each sample, so that it takes all page faults.
enum class Heap { Kept, Fresh };

/// An operation of bench_sample.
struct Work {
    std::string operation;
    Heap heap = Heap::Kept;
    std::string file;
    int number = 0;
};

/// The component and its peers, or the component and its other build.
[[nodiscard]] Contest ContestOf(const Setup& setup, const Work& work, std::initializer_list<const char*> peers = {});

/// One turn of a whole process that must print `expected` and a line break, or anything if that is empty.
[[nodiscard]] Contender WholeProcess(std::string name, Command command, std::string expected);

/// What a measured process prints.
[[nodiscard]] Samples SamplesOf(const std::string& output);

}  // namespace zupm::bench
