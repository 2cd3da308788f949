#include "com/ClassFactory.h"

namespace zupm {

HRESULT ClassFactory::QueryInterface(REFIID iid, void** out) noexcept
{
    if (out == nullptr) {
        return E_POINTER;
    }
    if (!(iid == IID_IUnknown) && !(iid == IID_IClassFactory)) {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    *out = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

ULONG ClassFactory::AddRef() noexcept
{
    return m_references.Increment();
}

ULONG ClassFactory::Release() noexcept
{
    const ULONG left = m_references.Decrement();
    if (left == 0) {
        delete this;
    }
    return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept
{
    return m_creator(outer, iid, out);
}

HRESULT ClassFactory::LockServer(BOOL lock) noexcept
{
    if (lock != 0) {
        LockModule();
    } else {
        UnlockModule();
    }
    return S_OK;
}

}  // namespace zupm
