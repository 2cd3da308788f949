#include "tests/support/ErrorInfo.h"

#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"

namespace zupm::test {

ErrorInformation TakeErrorInformation()
{
    ErrorInformation taken;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) != S_OK || !info) {
        return taken;
    }
    Bstr description;
    Bstr source;
    taken.present = true;
    static_cast<void>(info->GetDescription(description.Slot()));
    static_cast<void>(info->GetSource(source.Slot()));
    static_cast<void>(info->GetGUID(&taken.interfaceId));
    taken.description = description.Text();
    taken.source = source.Text();
    return taken;
}

void LeaveStaleErrorInformation()
{
    ComPtr<ICreateErrorInfo> creator;
    if (CreateErrorInfo(creator.Put()) != S_OK) {
        throw std::runtime_error("no error information object");
    }
    const Bstr stale(u"stale: left by an earlier call");
    static_cast<void>(creator->SetDescription(stale.Get()));
    static_cast<void>(SetErrorInfo(0, creator.Query<IErrorInfo>().Get()));
}

}  // namespace zupm::test
