/// The process that is killed, as its killer sees it.
#pragma once

#include <memory>
#include <string>

#include "Victim.h"

namespace zupm::test {

/// Starts victims, one at a time, and kills them.
///
/// Errors  std::runtime_error when the system refuses.
class VictimProcess {
public:
    VictimProcess();
    /// Kills the one that still runs.
    ~VictimProcess();
    VictimProcess(const VictimProcess&) = delete;
    VictimProcess& operator=(const VictimProcess&) = delete;

    /// Starts a victim on the file at `path`, which holds the version `progress.completed`. `ready` has loaded that and
    /// been edited to the next: a victim that is a fork goes on with it, any other does both itself.
    void Start(PolicyFileClient& ready, const std::u16string& path, WayOfWriting way);
    /// Kills it at once, as the system does. Returns when nothing of it is left.
    void Kill();

    [[nodiscard]] KillProgress& Progress();

private:
    struct System;
    std::unique_ptr<System> m_system;
};

}  // namespace zupm::test
