// Objects by class identifier: finds a class's module and its class object.
#include <iterator>
#include <string>

#include "comrt/ClassTable.h"
#include "comrt/Guarded.h"
#include "text/Utf.h"
#include "zuPolicyManager/zucomrt.h"

namespace zupm::runtime {
namespace {

constexpr HRESULT kNoSuchKey = static_cast<HRESULT>(0x80070002u);

/// Frees a string of the runtime at the end of a scope.
struct OwnedString {
    BSTR text = nullptr;

    OwnedString() = default;
    OwnedString(const OwnedString&) = delete;
    OwnedString& operator=(const OwnedString&) = delete;
    ~OwnedString() { SysFreeString(text); }
};

std::u16string TextOf(REFGUID guid)
{
    OLECHAR text[39]{};
    static_cast<void>(StringFromGUID2(guid, text, static_cast<int>(std::size(text))));
    return text;
}

/// Reads a key's default value; `missing` is the result when there is none.
HRESULT ReadDefault(const std::u16string& key, HRESULT missing, std::u16string& value)
{
    OwnedString found;
    const HRESULT read = ZuRegistryGetValue(key.c_str(), nullptr, &found.text);
    if (FAILED(read)) {
        return read == kNoSuchKey ? missing : read;
    }
    value.assign(found.text, SysStringLen(found.text));
    return S_OK;
}

HRESULT FindRegistered(REFCLSID clsid, ClassSource& source)
{
    std::u16string value;
    const HRESULT read = ReadDefault(u"CLSID\\" + TextOf(clsid) + u"\\InprocServer32", REGDB_E_CLASSNOTREG, value);
    if (FAILED(read)) {
        return read;
    }
    const std::string path = ToUtf8Lossy(value);
    source = Classes().FindLoaded(path);
    if (source.get != nullptr) {
        return S_OK;
    }
    std::shared_ptr<const LoadedModule> module;
    const HRESULT loaded = LoadedModule::Load(path, module);
    if (SUCCEEDED(loaded)) {
        source = Classes().Add(std::move(module));
    }
    return loaded;
}

HRESULT FindSource(REFCLSID clsid, DWORD context, ClassSource& source)
{
    if ((context & CLSCTX_INPROC_SERVER) == 0) {
        return REGDB_E_CLASSNOTREG;
    }
    source = Classes().FindAnnounced(clsid);
    return source.get != nullptr ? S_OK : FindRegistered(clsid, source);
}

HRESULT AskModule(const ClassSource& source, REFCLSID clsid, REFIID iid, void** out)
{
    const HRESULT asked = source.get(clsid, iid, out);
    if (FAILED(asked)) {
        *out = nullptr;
        return asked;
    }
    return *out == nullptr ? E_UNEXPECTED : asked;
}

HRESULT CreateWith(const ClassSource& source, REFCLSID clsid, IUnknown* outer, REFIID iid, void** out)
{
    void* classObject = nullptr;
    const HRESULT asked = AskModule(source, clsid, IID_IClassFactory, &classObject);
    if (FAILED(asked)) {
        return asked;
    }
    auto* factory = static_cast<IClassFactory*>(classObject);
    const HRESULT created = factory->CreateInstance(outer, iid, out);
    factory->Release();
    if (FAILED(created)) {
        *out = nullptr;
    }
    return created;
}

/// The class identifier that a ProgID's own key holds.
HRESULT ClassOfKey(const std::u16string& progId, CLSID& clsid)
{
    std::u16string text;
    const HRESULT read = ReadDefault(progId + u"\\CLSID", CO_E_CLASSSTRING, text);
    return FAILED(read) ? read : CLSIDFromString(text.c_str(), &clsid);
}

HRESULT ClassOfProgId(const std::u16string& progId, CLSID& clsid)
{
    // A name with a separator in it would reach into other keys.
    if (progId.empty() || progId.find(u'\\') != std::u16string::npos) {
        return CO_E_CLASSSTRING;
    }
    if (const auto announced = Classes().FindProgId(progId)) {
        clsid = *announced;
        return S_OK;
    }
    const HRESULT own = ClassOfKey(progId, clsid);
    if (own != CO_E_CLASSSTRING) {
        return own;
    }
    std::u16string current;
    const HRESULT read = ReadDefault(progId + u"\\CurVer", CO_E_CLASSSTRING, current);
    return FAILED(read) ? read : ClassOfKey(current, clsid);
}

}  // namespace
}  // namespace zupm::runtime

using namespace zupm::runtime;

HRESULT CoInitializeEx(void* reserved, DWORD /*flags*/) noexcept
{
    return reserved == nullptr ? S_OK : E_INVALIDARG;
}

void CoUninitialize() noexcept {}

HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, void* /*server*/, REFIID iid, void** out) noexcept
{
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    return Guarded([&] {
        ClassSource source;
        const HRESULT found = FindSource(clsid, context, source);
        return FAILED(found) ? found : AskModule(source, clsid, iid, out);
    });
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** out) noexcept
{
    if (out == nullptr) {
        return E_POINTER;
    }
    *out = nullptr;
    return Guarded([&] {
        ClassSource source;
        const HRESULT found = FindSource(clsid, context, source);
        return FAILED(found) ? found : CreateWith(source, clsid, outer, iid, out);
    });
}

void CoFreeUnusedLibraries() noexcept
{
    static_cast<void>(Guarded([] {
        Classes().FreeUnused();
        return S_OK;
    }));
}

HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid) noexcept
{
    if (clsid == nullptr) {
        return E_POINTER;
    }
    *clsid = GUID_NULL;
    return Guarded([&] { return ClassOfProgId(progId == nullptr ? std::u16string() : progId, *clsid); });
}

HRESULT ZuAnnounceModule(const ZuClassEntry* entries, std::size_t count, ZuGetClassObject get) noexcept
{
    if (get == nullptr || (entries == nullptr && count != 0)) {
        return E_POINTER;
    }
    return Guarded([&] {
        Classes().Announce({entries, count, get, BaseOf(get)});
        return S_OK;
    });
}

void ZuWithdrawModule(ZuGetClassObject get) noexcept
{
    static_cast<void>(Guarded([&] {
        Classes().Withdraw(get);
        return S_OK;
    }));
}
