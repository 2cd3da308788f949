#include "com/ComCall.h"

#include <cstdint>

#include "com/Strings.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

namespace {

std::u16string Describe(result::Code code, std::u16string_view detail)
{
    if (!detail.empty()) {
        return std::u16string(detail);
    }
    if (const auto sentence = result::SentenceFor(code); !sentence.empty()) {
        return std::u16string(sentence);
    }
    const LogArgument bits[] = {LogArgument(std::uint64_t{static_cast<std::uint32_t>(code)})};
    return CzuLogger::Format(u"The platform reported error 0x%08X.", bits);
}

HRESULT SetFailure(const CallSite& site, result::Code code, std::u16string_view detail)
{
    const Bstr description(Describe(code, detail));
    const Bstr source(std::u16string(u"ZuPolicyManager.").append(site.coclass));
    ComPtr<ICreateErrorInfo> creator;
    if (const HRESULT result = CreateErrorInfo(creator.Put()); FAILED(result)) {
        return result;
    }
    HRESULT result = creator->SetGUID(site.interfaceId);
    if (SUCCEEDED(result)) {
        result = creator->SetSource(source.Get());
    }
    if (SUCCEEDED(result)) {
        result = creator->SetDescription(description.Get());
    }
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(result)) {
        result = creator.Query(IID_IErrorInfo, info);
    }
    return SUCCEEDED(result) ? SetErrorInfo(0, info.Get()) : result;
}

}  // namespace

void ReportResult(const CallSite& site, result::Code code, std::u16string_view detail) noexcept
{
    bool isSet = false;
    if (code < 0) {
        try {
            isSet = SUCCEEDED(SetFailure(site, code, detail));
        } catch (...) {
            isSet = false;
        }
    }
    // Information about an earlier failure must not be taken for this call's, also when there was no memory for it.
    if (!isSet) {
        static_cast<void>(SetErrorInfo(0, nullptr));
    }
}

}  // namespace zupm
