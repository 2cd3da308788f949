/// The arguments of a call by name, on their way from variants into the member and back.
#pragma once

#include <array>
#include <cstddef>

#include "com/Dispatch.h"

namespace zupm {

/// One call's arguments, in the member's order and types.
///
/// Lifetime  For one call, on the stack. Frees every temporary that it still owns.
/// Threads   None of its own.
/// Errors    Results; never throws.
///
/// Where an output goes:
///
///     argument                       the member writes          afterwards
///     VT_BYREF of the slot's type    the caller's slot          nothing
///     VT_BYREF|VT_DISPATCH           a temporary                its IDispatch moves into the caller's slot
///     VT_BYREF|VT_VARIANT            a temporary                the variant is cleared and gets the value
///     left out (the result alone)    a temporary                moves into the call's result, or is freed
class DispatchArguments {
public:
    DispatchArguments() = default;
    ~DispatchArguments();
    DispatchArguments(const DispatchArguments&) = delete;
    DispatchArguments& operator=(const DispatchArguments&) = delete;

    /// Takes `parameters` (last argument first) for the member; the result output may be left out of them and then goes
    /// to `result`. DISP_E_BADPARAMCOUNT, DISP_E_TYPEMISMATCH and DISP_E_OVERFLOW (with the argument's index in
    /// `badArgument`), E_OUTOFMEMORY.
    [[nodiscard]] HRESULT Bind(const Member& member, const DISPPARAMS& parameters, VARIANT* result,
                               UINT& badArgument) noexcept;

    [[nodiscard]] const Argument* Values() const { return m_values.data(); }

    /// Moves the temporaries to where they belong, after a member that succeeded. DISP_E_TYPEMISMATCH for an object
    /// without IDispatch where the caller's slot is for one.
    [[nodiscard]] HRESULT StoreOutputs(UINT& badArgument) noexcept;

private:
    /// What one argument owns, and where it goes.
    struct Temporary {
        BSTR string = nullptr;
        LONG number = 0;
        /// A pointer of whichever interface the member hands out; each is an IUnknown at its start.
        alignas(void*) std::array<std::byte, sizeof(void*)> object{};
        ParameterType type{};
        VARIANT* variant = nullptr;      ///< the target, when it is a variant
        IDispatch** dispatch = nullptr;  ///< the target, when it is a slot for an IDispatch
        UINT index = 0;                  ///< the argument's
    };

    [[nodiscard]] HRESULT BindInput(std::size_t place, ParameterType type, const VARIANT& argument) noexcept;
    [[nodiscard]] HRESULT BindOutput(std::size_t place, ParameterType type, const VARIANT& argument) noexcept;
    void UseTemporary(std::size_t place, ParameterType type) noexcept;
    [[nodiscard]] static VARIANT TakeValue(Temporary& temporary) noexcept;

    std::size_t m_count = 0;
    std::array<Argument, kMostParameters> m_values{};
    std::array<Temporary, kMostParameters> m_temporaries{};
};

}  // namespace zupm
