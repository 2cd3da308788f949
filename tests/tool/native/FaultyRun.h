/// Runs of the tool in which a system call fails.
#pragma once

#include <string>
#include <vector>

#include "tests/tool/ToolProcess.h"

namespace zupm::test {

/// What goes wrong. Only calls on files count, and the call for random bytes.
struct CallFault {
    int call = -1;         ///< the number of the call, from 0; -1: none
    int error = 0;         ///< its errno
    bool forEver = false;  ///< all later calls fail too
    bool kills = false;    ///< the process is killed in place of the call
};

struct FaultyRun {
    ToolRun run;
    std::vector<std::string> calls;  ///< the names of all calls, up to the one that killed the process
    std::string failedCall;          ///< the first that failed; empty when the run made fewer
};

/// Runs the tool; the system asks this process about each call. Calls count from the start of the program on, over all
/// of its threads. Throws std::system_error when the system has no such questions (Linux before 5.5, or a container
/// that forbids them).
[[nodiscard]] FaultyRun RunToolWith(const CallFault& fault, const ToolPlace& place,
                                    const std::vector<std::string>& arguments);

}  // namespace zupm::test
