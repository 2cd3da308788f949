/// By-reference variants of script engines, for a dispatch layer that wants typed references.
#pragma once

#include <oaidl.h>

#include <array>
#include <cstddef>

#include "com/Dispatch.h"

namespace zupm::win32 {

/// The arguments of one call, with a typed temporary in place of each script variable that an output goes to.
///
/// A script engine passes a variable as a reference to a variant, whose type the call is to decide; the operating
/// system's dispatch layer takes references of the declared type only. It also takes a member's one result through the
/// call's result alone; here a caller may name it as the last argument instead, as direct callers do.
///
/// Lifetime  On the stack around one call; the caller's arguments must outlive it.
class ByReferenceArguments {
public:
    /// Takes over `parameters` for a call of `member`; null when the call names no known member.
    ByReferenceArguments(const Member* member, const DISPPARAMS& parameters) noexcept;
    ~ByReferenceArguments();
    ByReferenceArguments(const ByReferenceArguments&) = delete;
    ByReferenceArguments& operator=(const ByReferenceArguments&) = delete;

    /// What the call is to be given.
    [[nodiscard]] DISPPARAMS* Parameters() noexcept { return &m_parameters; }
    /// Where the call's result goes first; `result` is the caller's own place for it.
    [[nodiscard]] VARIANT* Result(VARIANT* result) noexcept { return m_resultSlot == nullptr ? result : &m_result; }

    /// DISP_E_TYPEMISMATCH when the last argument is to take the result and is no reference that could.
    [[nodiscard]] HRESULT Check() const noexcept;

    /// Hands the outputs of a call that succeeded to the script's variables.
    [[nodiscard]] HRESULT CopyBack() noexcept;

private:
    /// One substituted argument: where the output goes, and the value in between.
    struct Substitute {
        VARIANT* variable;
        VARIANT value;
    };

    void SubstituteArgument(std::size_t index, ParameterType type) noexcept;
    [[nodiscard]] HRESULT StoreResult() noexcept;

    DISPPARAMS m_parameters;
    std::array<VARIANTARG, kMostParameters> m_arguments{};
    std::array<Substitute, kMostParameters> m_substitutes{};
    std::size_t m_count = 0;
    ParameterType m_resultType{};
    const VARIANTARG* m_resultSlot = nullptr;
    VARIANT m_result{};
};

/// Turns an object of type VT_UNKNOWN into one of type VT_DISPATCH when it can be called by name: script engines call
/// members of the latter only.
void PreferDispatch(VARIANT& value) noexcept;

}  // namespace zupm::win32
