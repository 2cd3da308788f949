// The system's strings, counted among the allocations: this program's import of them leads here.
#include <windows.h>
// After it:
#include <oleauto.h>

#include "tests/support/FailingAllocations.h"

namespace {

using AllocateString = BSTR(WINAPI*)(const OLECHAR*, UINT);

BSTR WINAPI AllocateStringOrFail(const OLECHAR* text, UINT length)
{
    static const auto kSystems = reinterpret_cast<AllocateString>(
        reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(L"oleaut32.dll"), "SysAllocStringLen")));
    // Its turn is taken with a block of the program's own; the string itself is the system's and freed by it.
    void* const turn = zupm::test::AllocateOrFail(1);
    if (turn == nullptr) {
        return nullptr;
    }
    zupm::test::FreeAllocated(turn);
    return kSystems(text, length);
}

}  // namespace

// What a dllimport declaration calls through.
extern "C" const AllocateString __imp_SysAllocStringLen = AllocateStringOrFail;
