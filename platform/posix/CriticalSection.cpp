#include "platform/CriticalSection.h"

#include <pthread.h>

#include <new>

namespace zupm {

namespace {

pthread_mutex_t* MutexIn(std::byte* storage) noexcept
{
    return std::launder(reinterpret_cast<pthread_mutex_t*>(storage));
}

}  // namespace

CCriticalSection::CCriticalSection() noexcept
{
    static_assert(sizeof(pthread_mutex_t) <= kStorageBytes && alignof(pthread_mutex_t) <= 8);
    pthread_mutexattr_t recursive;
    pthread_mutexattr_init(&recursive);
    pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(new (m_storage) pthread_mutex_t, &recursive);
    pthread_mutexattr_destroy(&recursive);
}

CCriticalSection::~CCriticalSection()
{
    pthread_mutex_destroy(MutexIn(m_storage));
}

void CCriticalSection::Enter() noexcept
{
    pthread_mutex_lock(MutexIn(m_storage));
}

void CCriticalSection::Leave() noexcept
{
    pthread_mutex_unlock(MutexIn(m_storage));
}

}  // namespace zupm
