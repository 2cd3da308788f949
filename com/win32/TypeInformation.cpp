#include "com/win32/TypeInformation.h"

#include <oleauto.h>
#include <windows.h>

#include <algorithm>
#include <new>
#include <string>

#include "com/Dispatch.h"
#include "platform/Modules.h"
#include "platform/win32/Wide.h"
#include "zuPolicyManager/Owners.h"

namespace zupm::win32 {

namespace {

/// One cached description.
struct Entry {
    IID iid;
    ITypeInfo* info;
};

constexpr std::size_t kRoom = 16;

// A slim lock needs neither construction nor destruction, so nothing of it remains after the module is unloaded.
constinit SRWLOCK g_lock = SRWLOCK_INIT;
constinit Entry g_entries[kRoom]{};
constinit std::size_t g_count = 0;

class CacheLock {
public:
    CacheLock() noexcept { AcquireSRWLockExclusive(&g_lock); }
    ~CacheLock() { ReleaseSRWLockExclusive(&g_lock); }
    CacheLock(const CacheLock&) = delete;
    CacheLock& operator=(const CacheLock&) = delete;
};

ITypeInfo* FindCached(REFIID iid) noexcept
{
    Entry* const end = g_entries + g_count;
    Entry* const found =
        std::find_if(g_entries, end, [&](const Entry& entry) { return IsEqualIID(entry.iid, iid) != 0; });
    return found == end ? nullptr : found->info;
}

/// Reads the description from the library that is the module's resource 1.
HRESULT Read(REFIID iid, ITypeInfo** info)
{
    const std::u16string path = OwnModulePath();
    ComPtr<ITypeLib> library;
    const HRESULT loaded = LoadTypeLibEx(Wide(path), REGKIND_NONE, library.Put());
    return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(iid, info);
}

/// Hands out a new description and keeps a reference while there is room.
HRESULT ReadAndCache(REFIID iid, ITypeInfo** info) noexcept
{
    try {
        if (const HRESULT read = Read(iid, info); FAILED(read)) {
            return read;
        }
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    if (g_count < kRoom) {
        (*info)->AddRef();
        g_entries[g_count++] = {iid, *info};
    }
    return S_OK;
}

}  // namespace

HRESULT TypeInfoOf(REFIID iid, ITypeInfo** info) noexcept
{
    *info = nullptr;
    const CacheLock lock;
    ITypeInfo* const cached = FindCached(iid);
    if (cached == nullptr) {
        return ReadAndCache(iid, info);
    }
    cached->AddRef();
    *info = cached;
    return S_OK;
}

}  // namespace zupm::win32

namespace zupm {

void ReleaseTypeInformation() noexcept
{
    const win32::CacheLock lock;
    while (win32::g_count > 0) {
        win32::g_entries[--win32::g_count].info->Release();
    }
}

}  // namespace zupm
