#include <csignal>

#include "tools/zupolicy/client/Interrupt.h"

namespace zupm::tool {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t isAsked = 0;

void Note(int /*signal*/)
{
    isAsked = 1;
}

}  // namespace

Interrupt::Interrupt()
{
    isAsked = 0;
    for (const int signal : kSignals) {
        struct sigaction before {};
        // A program that was started with nohup ignores a signal, and goes on to do so.
        if (sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) {
            continue;
        }
        struct sigaction action {};
        action.sa_handler = Note;
        action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
        sigaction(signal, &action, nullptr);
    }
}

Interrupt::~Interrupt()
{
    for (const int signal : kSignals) {
        struct sigaction now {};
        if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler == Note) {
            static_cast<void>(std::signal(signal, SIG_DFL));
        }
    }
}

bool Interrupt::IsAsked() noexcept
{
    return isAsked != 0;
}

}  // namespace zupm::tool
