/// What calls may return.
#pragma once

#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::fuzz {

/// Demands a result code of the component, and error information that goes with it.
void DemandMemberCode(HRESULT code);

/// Demands a result of Invoke: that of the member, or one of the platform's for a call that does not fit.
void DemandInvokeCode(HRESULT code, const EXCEPINFO* exception);

}  // namespace zupm::fuzz
