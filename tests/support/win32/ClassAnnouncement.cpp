#include "tests/support/ClassAnnouncement.h"

#include <array>
#include <iterator>
#include <utility>

#include "module/ModuleObjects.h"
#include "module/ModuleServer.h"
#include "zuPolicyManager/Owners.h"

namespace zupm::test {

namespace {

/// What the component runtime holds of a class. Unlike the class's own class object it is no reason to keep the module
/// loaded, so the module still reports whether anybody uses it.
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

constexpr std::size_t kClassCount = std::size(kModuleObjects);

constinit auto g_classes = []<std::size_t... Row>(std::index_sequence<Row...>)
{
    return std::array{AnnouncedClass(kModuleObjects[Row].clsid)...};
}
(std::make_index_sequence<kClassCount>());
constinit std::array<DWORD, kClassCount> g_cookies{};
constinit std::size_t g_count = 0;

}  // namespace

HRESULT AnnounceTestClasses()
{
    if (g_count != 0) {
        return S_OK;
    }
    while (g_count < kClassCount) {
        const HRESULT announced = CoRegisterClassObject(kModuleObjects[g_count].clsid, &g_classes[g_count],
                                                        CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &g_cookies[g_count]);
        if (FAILED(announced)) {
            WithdrawTestClasses();
            return announced;
        }
        ++g_count;
    }
    return S_OK;
}

void WithdrawTestClasses()
{
    while (g_count > 0) {
        CoRevokeClassObject(g_cookies[--g_count]);
    }
}

}  // namespace zupm::test
