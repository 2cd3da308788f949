// The module's first instruction and its last. The statically linked C and C++ runtimes take thread-local storage slots
// (for exceptions and for thread identities) and never give them back; a process has about a thousand, so one that
// loads and unloads the module often would run out. Here every slot that they take is noted, and freed after they have
// shut down.
#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>

namespace {

using AllocateSlot = DWORD(WINAPI*)();
using FreeSlot = BOOL(WINAPI*)(DWORD);

constexpr DWORD kNoSlot = TLS_OUT_OF_INDEXES;
constexpr std::size_t kMostSlots = 32;

constinit std::array<std::atomic<DWORD>, kMostSlots> g_slots{};
constinit std::atomic<AllocateSlot> g_allocate = nullptr;
constinit std::atomic<FreeSlot> g_free = nullptr;

/// Slots are kept as number + 1, so that all zeroes means none.
void Note(DWORD slot) noexcept
{
    for (std::atomic<DWORD>& place : g_slots) {
        DWORD none = 0;
        if (place.compare_exchange_strong(none, slot + 1)) {
            return;
        }
    }
}

void Forget(DWORD slot) noexcept
{
    for (std::atomic<DWORD>& place : g_slots) {
        DWORD noted = slot + 1;
        if (place.compare_exchange_strong(noted, 0)) {
            return;
        }
    }
}

/// The system's own functions, which the runtimes no longer reach directly.
void FindSystemFunctions() noexcept
{
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    g_allocate = reinterpret_cast<AllocateSlot>(reinterpret_cast<void*>(GetProcAddress(kernel, "TlsAlloc")));
    g_free = reinterpret_cast<FreeSlot>(reinterpret_cast<void*>(GetProcAddress(kernel, "TlsFree")));
}

DWORD WINAPI AllocateNotedSlot()
{
    const AllocateSlot allocate = g_allocate.load();
    const DWORD slot = allocate == nullptr ? kNoSlot : allocate();
    if (slot != kNoSlot) {
        Note(slot);
    }
    return slot;
}

BOOL WINAPI FreeNotedSlot(DWORD slot)
{
    Forget(slot);
    const FreeSlot release = g_free.load();
    return release == nullptr ? FALSE : release(slot);
}

void FreeNotedSlots() noexcept
{
    for (std::atomic<DWORD>& place : g_slots) {
        if (const DWORD noted = place.exchange(0); noted != 0) {
            g_free.load()(noted - 1);
        }
    }
}

}  // namespace

extern "C" {

// The runtimes call through these import slots; defined here, they are not taken from the system's import library.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the linker's names
extern const AllocateSlot __imp_TlsAlloc;
extern const FreeSlot __imp_TlsFree;
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
const AllocateSlot __imp_TlsAlloc = &AllocateNotedSlot;
const FreeSlot __imp_TlsFree = &FreeNotedSlot;

BOOL WINAPI DllMainCRTStartup(HINSTANCE instance, DWORD reason, LPVOID processEnds);

/// What the module's header names as its entry: the runtime's entry, with the slots around it.
BOOL WINAPI ZupmModuleEntry(HINSTANCE instance, DWORD reason, LPVOID processEnds)
{
    if (reason == DLL_PROCESS_ATTACH) {
        FindSystemFunctions();
    }
    const BOOL result = DllMainCRTStartup(instance, reason, processEnds);
    // When the process ends, other code may still use the slots, and all of them go anyway.
    if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
        FreeNotedSlots();
    }
    return result;
}

}  // extern "C"
