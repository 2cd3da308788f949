/// Rows of the interface tables, made from the interfaces' own member functions.
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <string_view>
#include <utility>

#include "com/Dispatch.h"

namespace zupm {

/// A parameter name as a template argument.
template <std::size_t Size>
struct ParameterName {
    char16_t text[Size]{};

    constexpr ParameterName(const char16_t (&name)[Size])  // NOLINT(google-explicit-constructor): made from a literal
    {
        std::copy_n(name, Size, text);
    }
    [[nodiscard]] constexpr std::u16string_view View() const { return {text, Size - 1}; }
};

/// How one C++ parameter type travels through a dispatch call.
template <class Type>
struct DispatchType;

template <>
struct DispatchType<BSTR> {
    static constexpr ParameterType kType = ParameterType::String;
    static BSTR Take(const Argument& argument) { return argument.string; }
};
template <>
struct DispatchType<LONG> {
    static constexpr ParameterType kType = ParameterType::Number;
    static LONG Take(const Argument& argument) { return argument.number; }
};
template <>
struct DispatchType<IUnknown*> {
    static constexpr ParameterType kType = ParameterType::Object;
    static IUnknown* Take(const Argument& argument) { return argument.object; }
};

/// An output: the address of the caller's slot.
template <class Slot, ParameterType Type>
struct SlotDispatchType {
    static constexpr ParameterType kType = Type;
    static Slot Take(const Argument& argument) { return static_cast<Slot>(argument.slot); }
};

template <>
struct DispatchType<BSTR*> : SlotDispatchType<BSTR*, ParameterType::StringSlot> {
};
template <>
struct DispatchType<LONG*> : SlotDispatchType<LONG*, ParameterType::NumberSlot> {
};
template <>
struct DispatchType<IUnknown**> : SlotDispatchType<IUnknown**, ParameterType::ObjectSlot> {
};
template <std::derived_from<IDispatch> Interface>
struct DispatchType<Interface**> : SlotDispatchType<Interface**, ParameterType::DispatchSlot> {
};

/// The interface of a slot whose object can be called by name.
template <class Type>
inline constexpr const IID* kSlotInterface = nullptr;
template <std::derived_from<IDispatch> Interface>
inline constexpr const IID* kSlotInterface<Interface**> = &InterfaceTraits<Interface>::Id();

[[nodiscard]] constexpr bool IsSlot(ParameterType type)
{
    return type != ParameterType::String && type != ParameterType::Number && type != ParameterType::Object;
}

/// What a table row needs of one member function.
template <class Function>
struct MemberSignature;

template <class Interface, class... Types>
struct MemberSignature<HRESULT (Interface::*)(Types...)> {
    static constexpr std::size_t kCount = sizeof...(Types);
    static constexpr std::array<ParameterType, kCount> kTypes{DispatchType<Types>::kType...};
    static constexpr std::array<const IID*, kCount> kSlotInterfaces{kSlotInterface<Types>...};

    template <auto Function>
    static HRESULT Call(IUnknown* self, const Argument* arguments)
    {
        return CallIndexed<Function>(static_cast<Interface*>(self), arguments, std::index_sequence_for<Types...>());
    }

private:
    template <auto Function, std::size_t... Index>
    static HRESULT CallIndexed(Interface* self, const Argument* arguments, std::index_sequence<Index...>)
    {
        return (self->*Function)(DispatchType<Types>::Take(arguments[Index])...);
    }
};

/// The parameters of a member function under the given names. Its only output is the operation's result.
template <auto Function, ParameterName... Names>
[[nodiscard]] constexpr auto MakeParameters()
{
    using Signature = MemberSignature<decltype(Function)>;
    static_assert(Signature::kCount == sizeof...(Names), "one name for each parameter");
    static_assert(Signature::kCount <= kMostParameters, "a call has no room for more");
    constexpr bool hasOneOutput = std::ranges::count_if(Signature::kTypes, IsSlot) == 1;
    std::array<Parameter, Signature::kCount> parameters{Parameter{Names.View(), {}}...};
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        parameters[i].type = Signature::kTypes[i];
        parameters[i].isResult = hasOneOutput && IsSlot(Signature::kTypes[i]);
        parameters[i].slotInterface = Signature::kSlotInterfaces[i];
    }
    return parameters;
}

template <auto Function, ParameterName... Names>
inline constexpr auto kParametersOf = MakeParameters<Function, Names...>();

/// One row: `MethodRow<&IPolicyFile::RemoveTask, u"strSoftwareID", u"strTaskID">(6, u"RemoveTask", "...")`.
template <MemberKind Kind, auto Function, ParameterName... Names>
[[nodiscard]] constexpr Member MakeRow(DISPID id, std::u16string_view name, std::string_view help)
{
    return {name, id,
            Kind, kParametersOf<Function, Names...>,
            help, &MemberSignature<decltype(Function)>::template Call<Function>};
}

template <auto Function, ParameterName... Names>
[[nodiscard]] constexpr Member MethodRow(DISPID id, std::u16string_view name, std::string_view help)
{
    return MakeRow<MemberKind::Method, Function, Names...>(id, name, help);
}
template <auto Function, ParameterName... Names>
[[nodiscard]] constexpr Member GetRow(DISPID id, std::u16string_view name, std::string_view help)
{
    return MakeRow<MemberKind::PropertyGet, Function, Names...>(id, name, help);
}
template <auto Function, ParameterName... Names>
[[nodiscard]] constexpr Member PutRow(DISPID id, std::u16string_view name, std::string_view help)
{
    return MakeRow<MemberKind::PropertyPut, Function, Names...>(id, name, help);
}

}  // namespace zupm
