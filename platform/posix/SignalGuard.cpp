#include "platform/posix/SignalGuard.h"

#include <pthread.h>

#include <ctime>
#include <initializer_list>

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
    constexpr timespec kNoWait{0, 0};
    while (sigtimedwait(&m_raised, nullptr, &kNoWait) > 0) {
    }
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

}  // namespace zupm::native
