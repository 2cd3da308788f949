/// Ctrl-C between two files.
#pragma once

namespace zupm::tool {

/// While it lives, the first Ctrl-C (natively also a request to end) is only noted; the second ends the process as
/// usual.
///
/// Lifetime  One at a time.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// Any thread may ask.
    [[nodiscard]] static bool IsAsked() noexcept;
};

}  // namespace zupm::tool
