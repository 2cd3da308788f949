#include "platform/CriticalSection.h"

#include <windows.h>

#include <new>

namespace zupm {

namespace {

CRITICAL_SECTION* SectionIn(std::byte* storage) noexcept
{
    return std::launder(reinterpret_cast<CRITICAL_SECTION*>(storage));
}

}  // namespace

CCriticalSection::CCriticalSection() noexcept
{
    static_assert(sizeof(CRITICAL_SECTION) <= kStorageBytes && alignof(CRITICAL_SECTION) <= 8);
    // Debug information would be a heap block per object, and initialisation could then fail.
    InitializeCriticalSectionEx(::new (m_storage) CRITICAL_SECTION, 0, CRITICAL_SECTION_NO_DEBUG_INFO);
}

CCriticalSection::~CCriticalSection()
{
    DeleteCriticalSection(SectionIn(m_storage));
}

void CCriticalSection::Enter() noexcept
{
    EnterCriticalSection(SectionIn(m_storage));
}

void CCriticalSection::Leave() noexcept
{
    LeaveCriticalSection(SectionIn(m_storage));
}

}  // namespace zupm
