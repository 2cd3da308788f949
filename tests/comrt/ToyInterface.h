/// A toy dual interface: one member for each way that an argument travels.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "com/Dispatch.h"
#include "tests/support/Bstr.h"

namespace zupm::test {

/// Dispatch numbers.
enum ToyMember : DISPID {
    kJoin = 1,
    kAdd = 2,
    kCount = 3,
    kEcho = 4,
    kMakeTask = 5,
    kPair = 6,
    kFail = 7,
    kPlain = 8,
    kFailLate = 9,
    kNothing = 10,
    kNumbers = 11,
    kWriteOnly = 12,
};

/// The toy's table; "Value" has a get and a put row.
[[nodiscard]] const InterfaceDescription& ToyInterface();

/// An object that answers Invoke from the table. It counts its references and lives where the test puts it.
class Toy final : public IDispatch {
public:
    HRESULT QueryInterface(REFIID iid, void** out) override;
    ULONG AddRef() override { return ++references; }
    ULONG Release() override { return --references; }
    HRESULT GetTypeInfoCount(UINT* count) override { return DispatchGetTypeInfoCount(count); }
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    HRESULT Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* badArgument) override;

    ULONG references = 1;
    LONG stored = 0;
    int calls = 0;
    std::u16string written;
    /// What Echo was given.
    IUnknown* echoed = nullptr;
    /// What Plain hands out.
    IUnknown* plain = nullptr;
};

// Arguments.
[[nodiscard]] VARIANT Empty(VARTYPE type = VT_EMPTY);
[[nodiscard]] VARIANT Number(LONG number);
/// The string stays the caller's.
[[nodiscard]] VARIANT Text(const Bstr& text);
[[nodiscard]] VARIANT Object(IUnknown* object);
[[nodiscard]] VARIANT Reference(VARTYPE type, void* place);

/// The outcome of a call; the value is freed at the end.
struct ToyCall {
    /// Arguments in the member's order.
    ToyCall(Toy& toy, DISPID member, WORD flags, std::initializer_list<VARIANT> arguments);
    ~ToyCall();
    ToyCall(const ToyCall&) = delete;
    ToyCall& operator=(const ToyCall&) = delete;

    HRESULT result = S_OK;
    VARIANT value{};
    EXCEPINFO exception{};
    UINT badArgument = 99;
};

}  // namespace zupm::test
