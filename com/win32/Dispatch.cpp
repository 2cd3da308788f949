#include "com/Dispatch.h"

#include <oleauto.h>
#include <windows.h>

#include <algorithm>

#include "com/win32/ByReference.h"
#include "com/win32/TypeInformation.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

namespace {

/// The row that a call means. Script engines ask for "method or property" when the syntax fits both.
const Member* FindMember(const InterfaceDescription& description, DISPID id, WORD flags) noexcept
{
    const auto row = std::find_if(description.members.begin(), description.members.end(), [&](const Member& member) {
        return member.id == id && (static_cast<WORD>(member.kind) & flags) != 0;
    });
    return row == description.members.end() ? nullptr : &*row;
}

/// True when the member takes that many arguments; its one result may be left out of them. The operating system's layer
/// leaves the check of too many to chance.
bool TakesArguments(const Member& member, UINT count) noexcept
{
    const std::size_t all = member.parameters.size();
    return count == all || (count + 1 == all && member.parameters.back().isResult);
}

void ClearException(EXCEPINFO& exception) noexcept
{
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    exception = {};
}

/// Hands the exception to a caller that wants it; to one that does not, the member's own code is the result.
HRESULT HandOver(HRESULT result, EXCEPINFO& raised, EXCEPINFO* exception) noexcept
{
    if (result != DISP_E_EXCEPTION) {
        ClearException(raised);
        return result;
    }
    if (exception != nullptr) {
        *exception = raised;
        return result;
    }
    const HRESULT own = raised.scode;
    ClearException(raised);
    return own;
}

}  // namespace

HRESULT DispatchGetTypeInfoCount(UINT* count) noexcept
{
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 1;
    return S_OK;
}

HRESULT DispatchGetTypeInfo(const InterfaceDescription& description, UINT index, LCID /*locale*/,
                            ITypeInfo** info) noexcept
{
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = nullptr;
    return index == 0 ? win32::TypeInfoOf(description.iid, info) : DISP_E_BADINDEX;
}

HRESULT DispatchGetIDsOfNames(const InterfaceDescription& description, LPOLESTR* names, UINT count, LCID /*locale*/,
                              DISPID* ids) noexcept
{
    if (names == nullptr || ids == nullptr) {
        return E_POINTER;
    }
    ComPtr<ITypeInfo> info;
    const HRESULT result = win32::TypeInfoOf(description.iid, info.Put());
    return FAILED(result) ? result : info->GetIDsOfNames(names, count, ids);
}

HRESULT DispatchInvoke(const InterfaceDescription& description, IUnknown* self, DISPID member, LCID /*locale*/,
                       WORD flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                       UINT* badArgument) noexcept
{
    if (parameters == nullptr) {
        return E_POINTER;
    }
    ComPtr<ITypeInfo> info;
    if (const HRESULT got = win32::TypeInfoOf(description.iid, info.Put()); FAILED(got)) {
        return got;
    }
    const Member* const row = FindMember(description, member, flags);
    if (row != nullptr && !TakesArguments(*row, parameters->cArgs)) {
        return DISP_E_BADPARAMCOUNT;
    }
    win32::ByReferenceArguments arguments(row, *parameters);
    UINT ignored = 0;
    UINT* const bad = badArgument == nullptr ? &ignored : badArgument;
    if (const HRESULT checked = arguments.Check(); FAILED(checked)) {
        *bad = 0;
        return checked;
    }
    EXCEPINFO raised{};
    const HRESULT called =
        info->Invoke(self, member, flags, arguments.Parameters(), arguments.Result(result), &raised, bad);
    if (FAILED(called)) {
        return HandOver(called, raised, exception);
    }
    if (result != nullptr) {
        win32::PreferDispatch(*result);
    }
    return arguments.CopyBack();
}

}  // namespace zupm
