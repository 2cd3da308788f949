/// The base of every class: one dual interface and any others, with calls by name and error information.
#pragma once

#include <array>
#include <string_view>
#include <utility>

#include "com/ComCall.h"
#include "com/DispatchTarget.h"
#include "zuPolicyManager/ComBase.h"

namespace zupm {

/// An interface that the objects of a class have beside their dual one, and its table. Calls by name reach its members
/// after those of the dual one.
template <class Other, const InterfaceDescription& (*Describe)() noexcept>
struct AlsoImplements {
    using Interface = Other;
    static const InterfaceDescription& Description() noexcept { return Describe(); }
    static const IID& Id() noexcept { return Describe().iid; }
};

/// The base of every class; PlainObject or AggregatedObject (ObjectForms.h) make objects of it.
///
/// `Class` has, in public:
///   static const InterfaceDescription& Description() noexcept   its interface's table
///   static constexpr std::u16string_view kCoclass               its coclass, such as u"PolicyProduct"
///   static constexpr std::u16string_view kCreation              its creation in log lines, u"CClass::FinalConstruct()"
///   HRESULT FinalConstruct() noexcept                           the part of creation that may fail with a code
/// and a constructor without arguments, which may throw.
///
/// Lifetime  Counted by the form; the identity methods stay abstract here.
/// Threads   Holds no data.
template <class Class, class Interface, class... More>
class DualObject : public Interface, public ISupportErrorInfo, public More::Interface... {
public:
    HRESULT QueryInterface(REFIID iid, void** out) noexcept override = 0;
    ULONG AddRef() noexcept override = 0;
    ULONG Release() noexcept override = 0;

    HRESULT GetTypeInfoCount(UINT* count) noexcept final { return DispatchGetTypeInfoCount(count); }
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept final
    {
        return DispatchGetTypeInfo(Class::Description(), index, locale, info);
    }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) noexcept final
    {
        const bool isAsked = names != nullptr && count != 0;
        return DispatchGetIDsOfNames(*FindTarget(Targets(), isAsked ? names[0] : nullptr).description, names, count,
                                     locale, ids);
    }
    HRESULT Invoke(DISPID member, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* badArgument) noexcept final
    {
        const auto targets = Targets();
        const DispatchTarget& target = FindTarget(targets, member);
        return DispatchInvoke(*target.description, target.self, member, locale, KindsOf(member, flags), parameters,
                              result, exception, badArgument);
    }

    HRESULT InterfaceSupportsErrorInfo(REFIID iid) noexcept final
    {
        return iid == Class::Description().iid || ((iid == More::Id()) || ...) ? S_OK : S_FALSE;
    }

    /// The interfaces of the class itself, IID_IUnknown included; a reference is taken through AddRef.
    HRESULT QueryOwnInterface(REFIID iid, void** out) noexcept
    {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = FindInterface(iid);
        if (*out == nullptr) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }

    DualObject(const DualObject&) = delete;
    DualObject& operator=(const DualObject&) = delete;

protected:
    DualObject() noexcept = default;
    ~DualObject() = default;

    /// ComCall for a method of this class, of its dual interface or of another one.
    template <class Body>
    static HRESULT Call(std::u16string_view operation, Body&& body) noexcept
    {
        return CallOf(Class::Description().iid, operation, std::forward<Body>(body));
    }
    template <class Body>
    static HRESULT CallOf(const IID& iid, std::u16string_view operation, Body&& body) noexcept
    {
        return ComCall(CallSite{iid, Class::kCoclass, operation}, std::forward<Body>(body));
    }

private:
    [[nodiscard]] std::array<DispatchTarget, 1 + sizeof...(More)> Targets() noexcept
    {
        return {DispatchTarget{&Class::Description(), static_cast<Interface*>(this)},
                DispatchTarget{&More::Description(), static_cast<typename More::Interface*>(this)}...};
    }
    [[nodiscard]] void* FindInterface(REFIID iid) noexcept
    {
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == Class::Description().iid) {
            return static_cast<Interface*>(this);
        }
        if (iid == IID_ISupportErrorInfo) {
            return static_cast<ISupportErrorInfo*>(this);
        }
        void* found = nullptr;
        static_cast<void>(((iid == More::Id() && (found = static_cast<typename More::Interface*>(this))) || ...));
        return found;
    }
};

}  // namespace zupm
