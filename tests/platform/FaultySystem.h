/// System calls that fail when a test says so.
#pragma once

#include <string>

#include "platform/linux/SystemCalls.h"

namespace zupm::test {

/// What goes wrong.
struct Fault {
    int call = -1;              ///< the number of the call that fails, from 0; -1: none
    int error = 0;              ///< its errno
    bool forEver = false;       ///< all later calls fail too
    bool oneByOne = false;      ///< reads and writes move one byte at a time
    bool skipsFlushes = false;  ///< a flush that does not fail does nothing, which saves a test of many calls its time
    bool kills = false;         ///< the process is killed in place of the call
};

/// The faulty system, from its construction to its destruction. One at a time, for one thread.
///
/// A close that fails closes all the same, as the system's does.
class FaultySystem {
public:
    explicit FaultySystem(const Fault& fault);
    ~FaultySystem();
    FaultySystem(const FaultySystem&) = delete;
    FaultySystem& operator=(const FaultySystem&) = delete;

    /// The name of the first call that failed; empty when fewer calls were made.
    [[nodiscard]] std::string FailedCall() const;
};

}  // namespace zupm::test
