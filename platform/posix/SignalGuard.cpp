#include "platform/posix/SignalGuard.h"

#include <pthread.h>

#include <initializer_list>

#include "platform/posix/TargetFiles.h"

namespace zupm::native {

SignalGuard::SignalGuard() noexcept
{
    sigset_t pending;
    sigset_t guarded;
    sigpending(&pending);
    sigemptyset(&guarded);
    sigemptyset(&m_raised);
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        sigaddset(&guarded, signal);
        if (sigismember(&pending, signal) != 1) {
            sigaddset(&m_raised, signal);
        }
    }
    pthread_sigmask(SIG_BLOCK, &guarded, &m_before);
}

SignalGuard::~SignalGuard()
{
    DropPendingSignals(m_raised);
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

}  // namespace zupm::native
