/// The boundary between the runtime's C functions and its C++ inside.
#pragma once

#include <new>

#include "zuPolicyManager/zucomrt.h"

namespace zupm::runtime {

/// Runs `call` and turns every exception into a result: none leaves the runtime.
template <class Call>
[[nodiscard]] HRESULT Guarded(Call&& call) noexcept
{
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace zupm::runtime
