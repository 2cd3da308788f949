/// The types and functions of the component object model: on Windows those of the operating system, on every other
/// target those of the native component runtime.
#pragma once

#ifdef _WIN32
#include <oaidl.h>
#include <objbase.h>
#include <oleauto.h>
#else
#include <zuPolicyManager/zucomrt.h>
#endif

namespace zupm {

/// The identifier of an interface, Id(), and of the class that implements it, Class(). Each header that declares
/// interfaces specialises it for them.
template <class Interface>
struct InterfaceTraits;

template <>
struct InterfaceTraits<IUnknown> {
    static constexpr const IID& Id() { return IID_IUnknown; }
};
template <>
struct InterfaceTraits<IDispatch> {
    static constexpr const IID& Id() { return IID_IDispatch; }
};
template <>
struct InterfaceTraits<IEnumVARIANT> {
    static constexpr const IID& Id() { return IID_IEnumVARIANT; }
};
template <>
struct InterfaceTraits<IClassFactory> {
    static constexpr const IID& Id() { return IID_IClassFactory; }
};
template <>
struct InterfaceTraits<ISupportErrorInfo> {
    static constexpr const IID& Id() { return IID_ISupportErrorInfo; }
};
template <>
struct InterfaceTraits<IErrorInfo> {
    static constexpr const IID& Id() { return IID_IErrorInfo; }
};
template <>
struct InterfaceTraits<ICreateErrorInfo> {
    static constexpr const IID& Id() { return IID_ICreateErrorInfo; }
};

}  // namespace zupm
