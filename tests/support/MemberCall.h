/// Calls of members by name, as scripts make them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/Outs.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// What a call by name returned.
struct CallOutcome {
    /// What Invoke (or GetIDsOfNames) returned.
    HRESULT invoked = S_OK;
    /// The member's own result: the exception's code where there was one, otherwise Invoke's result.
    HRESULT code = S_OK;
    /// From the exception.
    std::u16string description;
    std::u16string source;
    /// The call's value: VT_EMPTY when it has none. `text`, `number` and `object` hold it when it is of their kind.
    VARTYPE type = VT_EMPTY;
    std::u16string text;
    LONG number = 0;
    ComPtr<IUnknown> object;
};

/// One call of one member: `MemberCall(product.Get(), u"GetSectionSetting").In(u"General").In(u"Mode").ForResult()`.
///
/// By-reference outs reach the callee as the slots that they are, whatever those hold.
class MemberCall {
public:
    MemberCall(IDispatch* object, std::u16string_view name);
    MemberCall(const MemberCall&) = delete;
    MemberCall& operator=(const MemberCall&) = delete;

    /// Arguments, first to last. A null string stays null.
    MemberCall& In(const Bstr& text);
    MemberCall& In(LONG number);
    MemberCall& In(IUnknown* object);
    MemberCall& Out(OutText& slot);
    MemberCall& Out(OutNumber& slot);
    MemberCall& Out(OutObject<IUnknown>& slot);
    MemberCall& Out(OutObject<IPolicyTask>& slot);
    MemberCall& Out(OutObject<IPolicyProduct>& slot);
    MemberCall& Out(OutObject<IPolicyNames>& slot);
    /// An argument as it is; what it holds stays the caller's.
    MemberCall& Raw(const VARIANT& argument);

    /// A method, without a place for its value.
    [[nodiscard]] CallOutcome Call();
    /// A method whose last argument is left out and returned as its value.
    [[nodiscard]] CallOutcome ForResult();
    [[nodiscard]] CallOutcome Get();
    /// A property put; the last argument is the value.
    [[nodiscard]] CallOutcome Put();
    [[nodiscard]] CallOutcome Invoke(WORD flags, bool wantsResult);

    /// The dispatch number of a name; DISPID_UNKNOWN when there is none.
    [[nodiscard]] static DISPID IdOf(IDispatch* object, std::u16string_view name);

private:
    MemberCall& ByReference(VARTYPE type, void* slot);

    IDispatch* m_object;
    std::u16string m_name;
    /// First to last; strings among them are ours.
    std::vector<VARIANT> m_arguments;
    std::vector<Bstr> m_strings;
};

}  // namespace zupm::test
