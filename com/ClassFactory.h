/// The class object of every class.
#pragma once

#include "com/ModuleLock.h"
#include "com/ObjectForms.h"
#include "zuPolicyManager/ComBase.h"

namespace zupm {

/// Creates one object of a class; CreateObject of ObjectForms.h.
using ObjectCreator = HRESULT (*)(IUnknown* outer, REFIID iid, void** out) noexcept;

/// A class object: hands creation on to one creator.
///
/// Lifetime  Keeps the module loaded, as every object does.
/// Threads   Any.
class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(ObjectCreator creator) noexcept : m_creator(creator) {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    HRESULT QueryInterface(REFIID iid, void** out) noexcept override;
    ULONG AddRef() noexcept override;
    ULONG Release() noexcept override;
    HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override;
    HRESULT LockServer(BOOL lock) noexcept override;

private:
    ~ClassFactory() = default;

    ModuleReference m_module;
    ReferenceCount m_references;
    ObjectCreator m_creator;
};

}  // namespace zupm
