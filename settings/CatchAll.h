/// The outermost level of operations that throw nothing.
#pragma once

#include <string_view>
#include <utility>

#include "com/Log.h"

namespace zupm {

/// Runs `body` and returns its code. Logs any exception at level 1 under `operation` ("CClass::Method()") and returns
/// Unexpected. Unlike at the interface boundary, that includes std::bad_alloc.
template <class Body>
[[nodiscard]] result::Code CatchAll(std::u16string_view operation, Body&& body) noexcept
{
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        LogException(operation);
        return result::Unexpected;
    }
}

}  // namespace zupm
