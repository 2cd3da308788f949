#include "tests/support/SmallStackThread.h"

#include <windows.h>

#include <stdexcept>

namespace zupm::test {

void RunOnSmallStack(const std::function<void()>& work)
{
    constexpr SIZE_T kStackBytes = SIZE_T{1} << 20;
    const auto run = [](void* context) -> DWORD {
        (*static_cast<const std::function<void()>*>(context))();
        return 0;
    };
    const HANDLE thread = CreateThread(nullptr, kStackBytes, run, const_cast<std::function<void()>*>(&work),
                                       STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (thread == nullptr) {
        throw std::runtime_error("no thread with a small stack");
    }
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

}  // namespace zupm::test
