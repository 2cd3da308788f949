/// Allocations that fail on purpose, in this program and in the libraries that it uses.
///
/// FailingAllocations.cpp replaces operator new; a program that fails allocations lists it among its sources.
/// FailingExpat.cpp (with `-Wl,--wrap=XML_ParserCreate`) adds Expat's, win32/FailingStrings.cpp those of the system's
/// strings. (The native runtime allocates its strings with operator new.)
#pragma once

#include <cstddef>

namespace zupm::test {

/// Makes the allocation with this number fail, counted from 1 on the calling thread, for a scope; all later ones too
/// when memory is to stay short.
class FailingAllocation {
public:
    explicit FailingAllocation(int number, bool forEver = false);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether an allocation failed.
    [[nodiscard]] bool Happened() const;
};

/// What the calling thread allocated and did not free, in blocks; less than 0 when it freed more.
[[nodiscard]] long LiveAllocations();

/// Memory as operator new has it: null when it is this allocation's turn to fail. For allocators that are replaced too.
[[nodiscard]] void* AllocateOrFail(std::size_t size) noexcept;
[[nodiscard]] void* ReallocateOrFail(void* memory, std::size_t size) noexcept;
void FreeAllocated(void* memory) noexcept;

}  // namespace zupm::test
