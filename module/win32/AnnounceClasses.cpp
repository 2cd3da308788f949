#include "module/win32/AnnounceClasses.h"

#include <array>

#include "module/ModuleServer.h"
#include "zuPolicyManager/Owners.h"

namespace zupm {

namespace {

/// What the component runtime holds of a class. Unlike the class's own class object it is no reason to keep the module
/// loaded, so that the module still tells whether anybody uses it.
///
/// Lifetime  The program's; not counted.
class AnnouncedClass final : public IClassFactory {
public:
    constexpr explicit AnnouncedClass(REFCLSID clsid) noexcept : m_clsid(clsid) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) noexcept override
    {
        if (out == nullptr) {
            return E_POINTER;
        }
        const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
        *out = known ? static_cast<IClassFactory*>(this) : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override
    {
        ComPtr<IClassFactory> own;
        const HRESULT got = ModuleGetClassObject(m_clsid, IID_IClassFactory, own.PutVoid());
        return FAILED(got) ? got : own->CreateInstance(outer, iid, out);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override
    {
        ComPtr<IClassFactory> own;
        const HRESULT got = ModuleGetClassObject(m_clsid, IID_IClassFactory, own.PutVoid());
        return FAILED(got) ? got : own->LockServer(lock);
    }

private:
    const CLSID& m_clsid;
};

constinit std::array g_classes{AnnouncedClass(CLSID_TaskInfo), AnnouncedClass(CLSID_PolicyTask),
                               AnnouncedClass(CLSID_PolicyProduct), AnnouncedClass(CLSID_PolicyFile)};
constexpr std::array kIdentifiers{CLSID_TaskInfo, CLSID_PolicyTask, CLSID_PolicyProduct, CLSID_PolicyFile};
constinit std::array<DWORD, kIdentifiers.size()> g_cookies{};
constinit std::size_t g_count = 0;

}  // namespace

HRESULT AnnounceClasses() noexcept
{
    if (g_count != 0) {
        return S_OK;
    }
    while (g_count < g_classes.size()) {
        const HRESULT announced = CoRegisterClassObject(kIdentifiers[g_count], &g_classes[g_count],
                                                        CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &g_cookies[g_count]);
        if (FAILED(announced)) {
            WithdrawClasses();
            return announced;
        }
        ++g_count;
    }
    return S_OK;
}

void WithdrawClasses() noexcept
{
    while (g_count > 0) {
        CoRevokeClassObject(g_cookies[--g_count]);
    }
}

}  // namespace zupm
