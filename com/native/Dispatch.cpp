#include "com/Dispatch.h"

#include <algorithm>

#include "com/native/DispatchArguments.h"
#include "text/AsciiCase.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {
namespace {

using Members = std::span<const Member>;

bool IsNamed(std::u16string_view name, LPCOLESTR asked)
{
    return asked != nullptr && EqualsIgnoringAsciiCase(name, std::u16string_view(asked));
}

/// The number of a name, which the get and the put of a property share.
DISPID FindId(Members members, LPCOLESTR name)
{
    const auto found =
        std::find_if(members.begin(), members.end(), [&](const Member& m) { return IsNamed(m.name, name); });
    return found == members.end() ? DISPID_UNKNOWN : found->id;
}

/// A parameter's number: its place.
DISPID FindParameter(Members members, DISPID member, LPCOLESTR name)
{
    for (const Member& row : members) {
        for (std::size_t place = 0; row.id == member && place < row.parameters.size(); ++place) {
            if (IsNamed(row.parameters[place].name, name)) {
                return static_cast<DISPID>(place);
            }
        }
    }
    return DISPID_UNKNOWN;
}

const Member* FindRow(Members members, DISPID id, WORD flags)
{
    const auto found = std::find_if(members.begin(), members.end(), [&](const Member& row) {
        return row.id == id && (static_cast<WORD>(row.kind) & flags) != 0;
    });
    return found == members.end() ? nullptr : &*found;
}

HRESULT CheckShape(const DISPPARAMS* parameters)
{
    const bool wrong = parameters == nullptr || (parameters->cArgs != 0 && parameters->rgvarg == nullptr) ||
                       (parameters->cNamedArgs != 0 && parameters->rgdispidNamedArgs == nullptr);
    return wrong ? E_INVALIDARG : S_OK;
}

/// The one named argument that is understood: the value of a property put, which may also come without its name.
HRESULT CheckNames(const Member& row, const DISPPARAMS& parameters)
{
    if (parameters.cNamedArgs == 0) {
        return S_OK;
    }
    const bool isPutValue = row.kind == MemberKind::PropertyPut && parameters.cNamedArgs == 1 &&
                            parameters.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    return isPutValue ? S_OK : DISP_E_NONAMEDARGS;
}

/// Fills in the error information that a failed member left for this thread.
void FillException(HRESULT failure, EXCEPINFO& exception)
{
    exception = EXCEPINFO{};
    exception.scode = failure;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) != S_OK) {
        return;
    }
    // A text that there is no memory for stays null; the code is what counts.
    static_cast<void>(info->GetDescription(&exception.bstrDescription));
    static_cast<void>(info->GetSource(&exception.bstrSource));
    static_cast<void>(info->GetHelpFile(&exception.bstrHelpFile));
    static_cast<void>(info->GetHelpContext(&exception.dwHelpContext));
}

HRESULT CallMember(const Member& row, IUnknown* self, const DispatchArguments& arguments, EXCEPINFO* exception)
{
    // Error information of an earlier call must not be taken for this one's.
    static_cast<void>(SetErrorInfo(0, nullptr));
    const HRESULT called = row.call(self, arguments.Values());
    if (SUCCEEDED(called) || exception == nullptr) {
        return called;
    }
    FillException(called, *exception);
    return DISP_E_EXCEPTION;
}

HRESULT CallRow(const Member& row, IUnknown* self, const DISPPARAMS& parameters, VARIANT* result, EXCEPINFO* exception,
                UINT& badArgument)
{
    DispatchArguments arguments;
    const HRESULT bound = arguments.Bind(row, parameters, result, badArgument);
    if (FAILED(bound)) {
        return bound;
    }
    const HRESULT called = CallMember(row, self, arguments, exception);
    if (FAILED(called)) {
        return called;
    }
    const HRESULT stored = arguments.StoreOutputs(badArgument);
    return FAILED(stored) ? stored : called;
}

}  // namespace

HRESULT DispatchGetTypeInfoCount(UINT* count) noexcept
{
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 0;
    return S_OK;
}

HRESULT DispatchGetTypeInfo(const InterfaceDescription& /*description*/, UINT /*index*/, LCID /*locale*/,
                            ITypeInfo** info) noexcept
{
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT DispatchGetIDsOfNames(const InterfaceDescription& description, LPOLESTR* names, UINT count, LCID /*locale*/,
                              DISPID* ids) noexcept
{
    if (names == nullptr || ids == nullptr || count == 0) {
        return E_INVALIDARG;
    }
    ids[0] = FindId(description.members, names[0]);
    bool unknown = ids[0] == DISPID_UNKNOWN;
    for (UINT i = 1; i < count; ++i) {
        ids[i] = ids[0] == DISPID_UNKNOWN ? DISPID_UNKNOWN : FindParameter(description.members, ids[0], names[i]);
        unknown = unknown || ids[i] == DISPID_UNKNOWN;
    }
    return unknown ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT DispatchInvoke(const InterfaceDescription& description, IUnknown* self, DISPID member, LCID /*locale*/,
                       WORD flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                       UINT* badArgument) noexcept
{
    // The result is the callee's to initialise: callers hand in whatever their stack held.
    VariantInit(result);
    const HRESULT shaped = CheckShape(parameters);
    if (FAILED(shaped)) {
        return shaped;
    }
    const Member* row = FindRow(description.members, member, flags);
    if (row == nullptr) {
        return DISP_E_MEMBERNOTFOUND;
    }
    const HRESULT named = CheckNames(*row, *parameters);
    if (FAILED(named)) {
        return named;
    }
    UINT bad = 0;
    const HRESULT called = CallRow(*row, self, *parameters, result, exception, bad);
    if (badArgument != nullptr && (called == DISP_E_TYPEMISMATCH || called == DISP_E_OVERFLOW)) {
        *badArgument = bad;
    }
    return called;
}

void ReleaseTypeInformation() noexcept {}

}  // namespace zupm
