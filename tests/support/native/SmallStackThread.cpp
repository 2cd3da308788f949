#include "tests/support/SmallStackThread.h"

#include <pthread.h>

#include <cstddef>
#include <stdexcept>

namespace zupm::test {

void RunOnSmallStack(const std::function<void()>& work)
{
    constexpr std::size_t kStackBytes = std::size_t{1} << 20;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStackBytes);
    const auto run = [](void* context) -> void* {
        (*static_cast<const std::function<void()>*>(context))();
        return nullptr;
    };
    pthread_t thread;
    const int failure = pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work));
    pthread_attr_destroy(&attributes);
    if (failure != 0) {
        throw std::runtime_error("no thread with a small stack");
    }
    pthread_join(thread, nullptr);
}

}  // namespace zupm::test
