/// Calls by name: the IDispatch half of a dual interface.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "zuPolicyManager/ComBase.h"

namespace zupm {

enum class MemberKind : WORD { Method = 1, PropertyGet = 2, PropertyPut = 4 };

/// The types that members take: inputs by value, outputs through a slot. The object of a DispatchSlot can be called by
/// name, the one of an ObjectSlot has to be asked.
enum class ParameterType { String, Number, Object, StringSlot, NumberSlot, ObjectSlot, DispatchSlot };

/// The most parameters of one member: calls have room for no more.
inline constexpr std::size_t kMostParameters = 5;

/// One parameter; `isResult` marks the output that a script gets as the call's value.
struct Parameter {
    std::u16string_view name;
    ParameterType type;
    bool isResult = false;
    /// The interface of a DispatchSlot; null for every other type.
    const IID* slotInterface = nullptr;
};

/// Holds one argument on its way into a call: a value, or the address of a slot.
union Argument {
    BSTR string;
    LONG number;
    IUnknown* object;
    void* slot;
};

/// One row of an interface: what the type library says of the member, and how to call it.
struct Member {
    std::u16string_view name;
    DISPID id;
    MemberKind kind;
    /// At most kMostParameters.
    std::span<const Parameter> parameters;
    std::string_view help;
    /// Calls the member of `self`, a pointer of the very interface that has it, with one argument per parameter.
    HRESULT (*call)(IUnknown* self, const Argument* arguments);
};

/// One interface; rows are in slot order, after the slots of its base: seven of IDispatch, three of IUnknown.
struct InterfaceDescription {
    const IID& iid;
    std::u16string_view name;
    std::span<const Member> members;
};

/// The IDispatch methods of `description` for `self`. Natively the table answers. On Windows the module's type library
/// does: each interface's type description is read once and kept, under one lock, until ReleaseTypeInformation.
/// GetTypeInfo wants a dual interface; `self` of Invoke is a pointer of the interface that is described.
[[nodiscard]] HRESULT DispatchGetTypeInfoCount(UINT* count) noexcept;
[[nodiscard]] HRESULT DispatchGetTypeInfo(const InterfaceDescription& description, UINT index, LCID locale,
                                          ITypeInfo** info) noexcept;
[[nodiscard]] HRESULT DispatchGetIDsOfNames(const InterfaceDescription& description, LPOLESTR* names, UINT count,
                                            LCID locale, DISPID* ids) noexcept;
[[nodiscard]] HRESULT DispatchInvoke(const InterfaceDescription& description, IUnknown* self, DISPID member,
                                     LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* exception, UINT* badArgument) noexcept;

/// Drops the cached type descriptions: the module is about to unload. Nothing to do natively.
void ReleaseTypeInformation() noexcept;

}  // namespace zupm
