/// The signals by which a failing write would end the process.
#pragma once

#include <csignal>

namespace zupm::native {

/// Keeps a write from ending the process, because the component is a guest in it: with a pipe whose reader is gone
/// (SIGPIPE) or a file that exceeds the process's limit (SIGXFSZ) the write fails with an error and nothing else.
///
/// Lifetime  The thread that makes it destroys it. Signals that were pending before stay pending; those that a write in
///           between raised are removed.
class SignalGuard {
public:
    SignalGuard() noexcept;
    ~SignalGuard();
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

private:
    sigset_t m_raised{};  ///< the guarded signals that were not pending before
    sigset_t m_before{};  ///< the thread's mask
};

}  // namespace zupm::native
