#include <windows.h>

#include <atomic>

#include "tools/zupolicy/client/Interrupt.h"

namespace zupm::tool {
namespace {

std::atomic<bool> isAsked = false;

/// Handled the first time; the system ends the process the second time.
BOOL WINAPI Note(DWORD event)
{
    const bool isKey = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    return isKey && !isAsked.exchange(true) ? TRUE : FALSE;
}

}  // namespace

Interrupt::Interrupt()
{
    isAsked = false;
    SetConsoleCtrlHandler(Note, TRUE);
}

Interrupt::~Interrupt()
{
    SetConsoleCtrlHandler(Note, FALSE);
}

bool Interrupt::IsAsked() noexcept
{
    return isAsked;
}

}  // namespace zupm::tool
