/// Signals that a failing write would end the process with.
#pragma once

#include <csignal>

namespace zupm::native {

/// Keeps a write from ending the process, because the component is a guest in it: a pipe whose reader went away
/// (SIGPIPE) and a file that grows over the process's limit (SIGXFSZ) fail the write with an error, no more.
///
/// Lifetime  The thread that makes it destroys it. Signals that were pending before stay pending; those that a write in
///           between raised are taken away.
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
