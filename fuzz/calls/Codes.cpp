#include "fuzz/calls/Codes.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "fuzz/support/Demand.h"
#include "tests/support/ErrorInfo.h"

namespace zupm::fuzz {

namespace {

constexpr HRESULT kInvokeCodes[] = {
    DISP_E_MEMBERNOTFOUND, DISP_E_TYPEMISMATCH, DISP_E_NONAMEDARGS, DISP_E_OVERFLOW, DISP_E_BADPARAMCOUNT, E_INVALIDARG,
};

void DemandDocumented(HRESULT code)
{
    Demand(code <= 0 && !result::SentenceFor(code).empty(), "a call gives a documented code", std::to_string(code));
}

}  // namespace

void DemandMemberCode(HRESULT code)
{
    DemandDocumented(code);
    const test::ErrorInformation info = test::TakeErrorInformation();
    Demand(info.present == (code < 0), "a failure leaves error information and a success none", std::to_string(code));
    Demand(!info.present || !info.description.empty(), "error information has a description", std::to_string(code));
}

void DemandInvokeCode(HRESULT code, const EXCEPINFO* exception)
{
    if (code == DISP_E_EXCEPTION) {
        Demand(exception != nullptr, "an exception has its place");
        DemandDocumented(exception->scode);
        Demand(exception->scode < 0, "an exception is a failure");
        Demand(SysStringLen(exception->bstrDescription) > 0, "an exception has a description");
        return;
    }
    if (std::find(std::begin(kInvokeCodes), std::end(kInvokeCodes), code) == std::end(kInvokeCodes)) {
        DemandDocumented(code);
        Demand(code >= 0 || exception == nullptr, "a failure is reported as an exception", std::to_string(code));
    }
}

}  // namespace zupm::fuzz
