/// The component runtime of this process.
#pragma once

namespace zupm::tool {

/// Keeps the component runtime started.
///
/// Lifetime  Outlives every object of the component.
/// Errors    The constructor throws Failure when the runtime cannot be started.
class Runtime {
public:
    Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;
    ~Runtime();
};

}  // namespace zupm::tool
