/// The outermost level of operations that let no exception out.
#pragma once

#include <string_view>
#include <utility>

#include "com/Log.h"

namespace zupm {

/// Runs `body` and returns its code. Whatever it throws is logged at level 1 under `operation` ("CClass::Method()") and
/// becomes Unexpected; other than at the interface boundary that includes std::bad_alloc.
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
