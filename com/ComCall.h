/// The guard around every interface method: exceptions become results, failing results leave error information.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "com/Log.h"
#include "zuPolicyManager/ComBase.h"

namespace zupm {

/// Who is being called, for error information and log lines.
struct CallSite {
    const IID& interfaceId;
    /// The coclass, such as "PolicyProduct".
    std::u16string_view coclass;
    /// The operation as log lines name it, such as "CPolicyProduct::GetSetting()".
    std::u16string_view operation;
};

/// Makes `code` the calling thread's error information: a failure gets `detail`, or the code's sentence when that is
/// empty; a success clears what an earlier call left.
void ReportResult(const CallSite& site, result::Code code, std::u16string_view detail) noexcept;

/// Runs `body` and returns its code, or the code of the exception that came out of it (CodeOfCurrentException), after
/// ReportResult. A body that takes a std::u16string& may put there what error information should say.
template <class Body>
HRESULT ComCall(const CallSite& site, Body&& body) noexcept
{
    std::u16string detail;
    result::Code code = result::Success;
    try {
        if constexpr (std::is_invocable_v<Body, std::u16string&>) {
            code = std::forward<Body>(body)(detail);
        } else {
            code = std::forward<Body>(body)();
        }
    } catch (...) {
        code = CodeOfCurrentException(site.operation);
    }
    ReportResult(site, code, detail);
    return code;
}

}  // namespace zupm
