// Error information: the object that a failing member leaves, and the calling thread's slot for it.
#include <atomic>
#include <string>

#include "comrt/Guarded.h"
#include "comrt/Lock.h"
#include "zuPolicyManager/zucomrt.h"

namespace zupm::runtime {
namespace {

/// The runtime's error information object: filled through ICreateErrorInfo, read through IErrorInfo.
///
/// Lifetime  Reference counted; created with one reference.
/// Threads   Any; a lock of its own guards the contents.
class ErrorInfo final : public ICreateErrorInfo, public IErrorInfo {
public:
    HRESULT QueryInterface(REFIID iid, void** out) noexcept override
    {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = nullptr;
        if (iid == IID_IUnknown || iid == IID_ICreateErrorInfo) {
            *out = static_cast<ICreateErrorInfo*>(this);
        } else if (iid == IID_IErrorInfo) {
            *out = static_cast<IErrorInfo*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG AddRef() noexcept override { return m_references.fetch_add(1, std::memory_order_relaxed) + 1; }
    ULONG Release() noexcept override
    {
        const ULONG left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT SetGUID(REFGUID interfaceId) noexcept override
    {
        const ScopedLock lock(m_lock);
        m_interfaceId = interfaceId;
        return S_OK;
    }
    HRESULT SetSource(LPOLESTR source) noexcept override { return Store(source, m_source); }
    HRESULT SetDescription(LPOLESTR description) noexcept override { return Store(description, m_description); }
    HRESULT SetHelpFile(LPOLESTR file) noexcept override { return Store(file, m_helpFile); }
    HRESULT SetHelpContext(DWORD context) noexcept override
    {
        const ScopedLock lock(m_lock);
        m_helpContext = context;
        return S_OK;
    }

    HRESULT GetGUID(GUID* interfaceId) noexcept override { return Fetch(m_interfaceId, interfaceId); }
    HRESULT GetSource(BSTR* source) noexcept override { return Copy(m_source, source); }
    HRESULT GetDescription(BSTR* description) noexcept override { return Copy(m_description, description); }
    HRESULT GetHelpFile(BSTR* file) noexcept override { return Copy(m_helpFile, file); }
    HRESULT GetHelpContext(DWORD* context) noexcept override { return Fetch(m_helpContext, context); }

private:
    HRESULT Store(const OLECHAR* text, std::u16string& member) noexcept
    {
        return Guarded([&] {
            std::u16string copy(text == nullptr ? u"" : text);
            const ScopedLock lock(m_lock);
            member.swap(copy);
            return S_OK;
        });
    }
    /// A text that was never set is handed out as null.
    HRESULT Copy(const std::u16string& member, BSTR* out) noexcept
    {
        if (out == nullptr) {
            return E_POINTER;
        }
        const ScopedLock lock(m_lock);
        *out = member.empty() ? nullptr : SysAllocStringLen(member.data(), static_cast<UINT>(member.size()));
        return *out == nullptr && !member.empty() ? E_OUTOFMEMORY : S_OK;
    }
    template <class Value>
    HRESULT Fetch(const Value& member, Value* out) noexcept
    {
        if (out == nullptr) {
            return E_POINTER;
        }
        const ScopedLock lock(m_lock);
        *out = member;
        return S_OK;
    }

    std::atomic<ULONG> m_references{1};
    Lock m_lock;
    GUID m_interfaceId{};
    std::u16string m_source;
    std::u16string m_description;
    std::u16string m_helpFile;
    DWORD m_helpContext = 0;
};

/// What one thread's slot holds; given up when the thread ends.
struct ErrorSlot {
    IErrorInfo* info = nullptr;

    ErrorSlot() = default;
    ErrorSlot(const ErrorSlot&) = delete;
    ErrorSlot& operator=(const ErrorSlot&) = delete;
    ~ErrorSlot() { Replace(nullptr); }

    /// Emptied or filled before the old object is released: its release may call this function again.
    void Replace(IErrorInfo* next) noexcept
    {
        IErrorInfo* old = info;
        info = next;
        if (old != nullptr) {
            old->Release();
        }
    }
};

thread_local ErrorSlot t_errorSlot;

}  // namespace
}  // namespace zupm::runtime

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) noexcept
{
    if (reserved != 0) {
        return E_INVALIDARG;
    }
    if (info != nullptr) {
        info->AddRef();
    }
    zupm::runtime::t_errorSlot.Replace(info);
    return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) noexcept
{
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = nullptr;
    if (reserved != 0) {
        return E_INVALIDARG;
    }
    // The slot's reference becomes the caller's.
    *info = zupm::runtime::t_errorSlot.info;
    zupm::runtime::t_errorSlot.info = nullptr;
    return *info == nullptr ? S_FALSE : S_OK;
}

HRESULT CreateErrorInfo(ICreateErrorInfo** info) noexcept
{
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = new (std::nothrow) zupm::runtime::ErrorInfo;
    return *info == nullptr ? E_OUTOFMEMORY : S_OK;
}
