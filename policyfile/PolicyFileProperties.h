/// The values of a policy file's three properties.
#pragma once

#include <atomic>
#include <cstdint>

#include "com/AtomicText.h"

namespace zupm {

/// The versions and the assignment list of a policy file.
///
/// Lifetime  Outlives what is loaded: closing a file resets nothing.
/// Threads   Properties are read without the object's lock; every value is replaced whole.
// Given: see docs/given-oddities.md, "versions survive a load".
struct PolicyFileProperties {
    std::atomic<std::uint64_t> taskVersion = 0;
    std::atomic<std::uint64_t> policyVersion = 0;
    AtomicText assignmentList;
};

}  // namespace zupm
