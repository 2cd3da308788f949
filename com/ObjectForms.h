/// The two forms of every class: an object of its own, and the inner part of an outer object.
#pragma once

#include <atomic>
#include <memory>
#include <string_view>
#include <utility>

#include "com/Log.h"
#include "com/ModuleLock.h"
#include "zuPolicyManager/ComBase.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

/// The number of references to one object.
class ReferenceCount {
public:
    ULONG Increment() noexcept { return m_count.fetch_add(1, std::memory_order_relaxed) + 1; }
    /// The references left; 0 is seen after everything that the other threads did with theirs.
    ULONG Decrement() noexcept { return m_count.fetch_sub(1, std::memory_order_acq_rel) - 1; }

private:
    std::atomic<ULONG> m_count = 1;
};

/// An object of its own.
///
/// Lifetime  Created with one reference, which the creator has; deletes itself with the last one.
template <class Class>
class PlainObject final : private ModuleReference, public Class {
public:
    template <class... Arguments>
    explicit PlainObject(Arguments&... arguments) : Class(arguments...)
    {
    }

    HRESULT QueryInterface(REFIID iid, void** out) noexcept override { return this->QueryOwnInterface(iid, out); }
    ULONG AddRef() noexcept override { return m_references.Increment(); }
    ULONG Release() noexcept override
    {
        const ULONG left = m_references.Decrement();
        if (left == 0) {
            delete this;
        }
        return left;
    }

private:
    ReferenceCount m_references;
};

/// The class inside an aggregate: every interface that it hands out has the identity and the lifetime of the outer
/// object.
template <class Class>
class ContainedObject final : public Class {
public:
    explicit ContainedObject(IUnknown& outer) : m_outer(outer) {}

    HRESULT QueryInterface(REFIID iid, void** out) noexcept override { return m_outer.QueryInterface(iid, out); }
    ULONG AddRef() noexcept override { return m_outer.AddRef(); }
    ULONG Release() noexcept override { return m_outer.Release(); }

private:
    IUnknown& m_outer;  // not counted: the outer object owns this one
};

/// An object that is part of an outer one. This is its inner unknown, which the outer object alone holds.
///
/// Lifetime  As PlainObject, counted apart from the outer object.
template <class Class>
class AggregatedObject final : private ModuleReference, public IUnknown {
public:
    explicit AggregatedObject(IUnknown& outer) : m_contained(outer) {}

    HRESULT QueryInterface(REFIID iid, void** out) noexcept override
    {
        if (!(iid == IID_IUnknown)) {
            return m_contained.QueryOwnInterface(iid, out);
        }
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() noexcept override { return m_references.Increment(); }
    ULONG Release() noexcept override
    {
        const ULONG left = m_references.Decrement();
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT FinalConstruct() noexcept { return m_contained.FinalConstruct(); }

private:
    ReferenceCount m_references;
    ContainedObject<Class> m_contained;
};

/// Creates an object in one of its forms and finishes its construction. On failure `object` is empty and
/// nothing remains: OutOfMemory, Unexpected (an exception, logged), or the code of FinalConstruct.
template <class Form, class... Arguments>
[[nodiscard]] HRESULT CreateForm(std::u16string_view operation, ComPtr<Form>& object, Arguments&... arguments) noexcept
{
    object.Reset();
    ComPtr<Form> created;
    try {
        created = ComPtr<Form>::Attach(std::make_unique<Form>(arguments...).release());
    } catch (...) {
        return CodeOfCurrentException(operation);
    }
    const HRESULT result = created->FinalConstruct();
    if (FAILED(result)) {
        return result;
    }
    object = std::move(created);
    return result;
}

/// Creates an object for the component's own use, whose class the caller sees; its creation code. The arguments are
/// those of the class.
template <class Class, class... Arguments>
[[nodiscard]] HRESULT CreatePlain(ComPtr<Class>& object, Arguments&... arguments) noexcept
{
    object.Reset();
    ComPtr<PlainObject<Class>> created;
    const HRESULT result = CreateForm(Class::kCreation, created, arguments...);
    if (SUCCEEDED(result)) {
        object = ComPtr<Class>::Attach(created.Detach());
    }
    return result;
}

/// Creates an object for a client, plain or (with an outer object) aggregated, and asks it for an interface.
/// CLASS_E_NOAGGREGATION when an outer object asks for anything else than IID_IUnknown; E_POINTER; E_NOINTERFACE; the
/// creation codes. The out is null on failure.
template <class Class>
[[nodiscard]] HRESULT CreateObject(IUnknown* outer, REFIID iid, void** out) noexcept
{
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    if (outer == nullptr) {
        ComPtr<PlainObject<Class>> created;
        const HRESULT result = CreateForm(Class::kCreation, created);
        return FAILED(result) ? result : created->QueryInterface(iid, out);
    }
    if (!(iid == IID_IUnknown)) {
        return CLASS_E_NOAGGREGATION;
    }
    ComPtr<AggregatedObject<Class>> created;
    const HRESULT result = CreateForm(Class::kCreation, created, *outer);
    return FAILED(result) ? result : created->QueryInterface(iid, out);
}

}  // namespace zupm
