/// The component runtime of the native target: the types and functions that a client of the policy manager needs and
/// that the Windows target takes from its operating system. Names, layouts and rules are those of the Windows
/// component object model, so that one client source serves both targets.
///
/// Strings   A `BSTR` is UTF-16, length-prefixed (32-bit byte count before the first unit) and followed by a null unit
///           that the length leaves out. It may hold embedded nulls. A null `BSTR` counts as the empty string.
/// Threads   Every function may be called from any thread. There are no apartments.
/// Errors    Results are `HRESULT`s: negative is failure.
#pragma once

#include <cstddef>
#include <cstdint>

using HRESULT = std::int32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using WORD = std::uint16_t;
using SHORT = std::int16_t;
using UINT = std::uint32_t;
using LCID = std::uint32_t;
using DISPID = std::int32_t;
using BOOL = std::int32_t;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = std::int16_t;
using OLECHAR = char16_t;
using BSTR = char16_t*;
using LPOLESTR = char16_t*;
using LPCOLESTR = const char16_t*;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
inline constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110u);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111u);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154u);
inline constexpr HRESULT CO_E_CLASSSTRING = static_cast<HRESULT>(0x800401F3u);
inline constexpr HRESULT CO_E_DLLNOTFOUND = static_cast<HRESULT>(0x800401F8u);
inline constexpr HRESULT CO_E_ERRORINDLL = static_cast<HRESULT>(0x800401F9u);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003u);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005u);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006u);
inline constexpr HRESULT DISP_E_NONAMEDARGS = static_cast<HRESULT>(0x80020007u);
inline constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009u);
inline constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000Bu);
inline constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000Au);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000Eu);

[[nodiscard]] constexpr bool SUCCEEDED(HRESULT result)
{
    return result >= 0;
}
[[nodiscard]] constexpr bool FAILED(HRESULT result)
{
    return result < 0;
}

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];

    friend constexpr bool operator==(const GUID& left, const GUID& right)
    {
        for (int i = 0; i < 8; ++i) {
            if (left.Data4[i] != right.Data4[i]) {
                return false;
            }
        }
        return left.Data1 == right.Data1 && left.Data2 == right.Data2 && left.Data3 == right.Data3;
    }
    friend constexpr bool operator!=(const GUID& left, const GUID& right) { return !(left == right); }
};

using IID = GUID;
using CLSID = GUID;
using REFIID = const IID&;
using REFCLSID = const CLSID&;
using REFGUID = const GUID&;

inline constexpr GUID GUID_NULL{};
inline constexpr IID IID_NULL{};
inline constexpr IID IID_IUnknown{0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IClassFactory{0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IDispatch{0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IEnumVARIANT{0x00020404, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IErrorInfo{0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ICreateErrorInfo{0x22F03340, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ISupportErrorInfo{
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};

/// The base of every interface: identity and lifetime.
struct IUnknown {
    /// Hands out another interface of the same object. E_NOINTERFACE it has none (the slot is null then); E_POINTER the
    /// slot is null.
    virtual HRESULT QueryInterface(REFIID iid, void** out) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;
};

struct IClassFactory : IUnknown {
    /// Creates one object; with an outer object only IID_IUnknown may be asked for.
    virtual HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** out) = 0;
    /// Keeps the module loaded while locked.
    virtual HRESULT LockServer(BOOL lock) = 0;
};

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_VOID = 24,
    VT_HRESULT = 25,
    VT_PTR = 26,
    VT_BYREF = 0x4000,
};

struct IDispatch;
struct VARIANT;

/// A value of the type that `vt` names: the kinds that dispatch calls of this component use.
struct VARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        std::int64_t llVal;
        std::uint64_t ullVal;
        LONG lVal;
        ULONG ulVal;
        SHORT iVal;
        WORD uiVal;
        std::int8_t cVal;
        std::uint8_t bVal;
        VARIANT_BOOL boolVal;
        HRESULT scode;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        LONG* plVal;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        VARIANT* pvarVal;
        void* byref;
    };
    void* reserved;
};
using VARIANTARG = VARIANT;

/// The arguments of a dispatch call, last argument first.
struct DISPPARAMS {
    VARIANTARG* rgvarg;
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
};

/// What a failed dispatch call reports. The caller frees the strings.
struct EXCEPINFO {
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    void* pvReserved;
    HRESULT (*pfnDeferredFillIn)(EXCEPINFO*);
    HRESULT scode;
};

inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 8;
inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;
inline constexpr DISPID DISPID_NEWENUM = -4;

/// Type descriptions are not available natively; the slot keeps the interface's layout.
struct ITypeInfo;

struct IDispatch : IUnknown {
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
    /// Dispatch numbers of a member (names are matched without regard to ASCII case); DISP_E_UNKNOWNNAME.
    virtual HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) = 0;
    /// Calls a member. When the member fails, the result is DISP_E_EXCEPTION, with the member's code in `scode`;
    /// without `exception` it is the member's code.
    virtual HRESULT Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;
};

/// Goes over the values of a collection once.
struct IEnumVARIANT : IUnknown {
    /// Hands out the next `count` values and goes on after them. S_FALSE fewer are left: those are handed out.
    /// `fetched` gets their number; it may be null when `count` is 1. What `values` held is overwritten. After a
    /// failure nothing is handed out and the place is the same.
    virtual HRESULT Next(ULONG count, VARIANT* values, ULONG* fetched) = 0;
    /// Passes over `count` values. S_FALSE fewer were left: the place is the end.
    virtual HRESULT Skip(ULONG count) = 0;
    virtual HRESULT Reset() = 0;
    /// Hands out another one at the same place.
    virtual HRESULT Clone(IEnumVARIANT** copy) = 0;
};

struct IErrorInfo : IUnknown {
    virtual HRESULT GetGUID(GUID* interfaceId) = 0;
    virtual HRESULT GetSource(BSTR* source) = 0;
    virtual HRESULT GetDescription(BSTR* description) = 0;
    virtual HRESULT GetHelpFile(BSTR* file) = 0;
    virtual HRESULT GetHelpContext(DWORD* context) = 0;
};

struct ICreateErrorInfo : IUnknown {
    virtual HRESULT SetGUID(REFGUID interfaceId) = 0;
    virtual HRESULT SetSource(LPOLESTR source) = 0;
    virtual HRESULT SetDescription(LPOLESTR description) = 0;
    virtual HRESULT SetHelpFile(LPOLESTR file) = 0;
    virtual HRESULT SetHelpContext(DWORD context) = 0;
};

struct ISupportErrorInfo : IUnknown {
    /// S_OK when failures of that interface leave error information, otherwise S_FALSE.
    virtual HRESULT InterfaceSupportsErrorInfo(REFIID iid) = 0;
};

inline constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;
inline constexpr DWORD CLSCTX_INPROC_HANDLER = 0x2;
inline constexpr DWORD CLSCTX_LOCAL_SERVER = 0x4;
inline constexpr DWORD CLSCTX_REMOTE_SERVER = 0x10;
inline constexpr DWORD CLSCTX_ALL = 0x17;
inline constexpr DWORD COINIT_MULTITHREADED = 0x0;
inline constexpr DWORD COINIT_APARTMENTTHREADED = 0x2;

#pragma GCC visibility push(default)
extern "C" {

/// Exists so that one client source serves both targets: natively there is nothing to start. S_OK; E_INVALIDARG
/// `reserved` is not null.
HRESULT CoInitializeEx(void* reserved, DWORD flags) noexcept;
void CoUninitialize() noexcept;

/// Hands out a class object: from a module that announced the class in this process, or from the module that the
/// registry file names, which is loaded and stays loaded until CoFreeUnusedLibraries.
/// REGDB_E_CLASSNOTREG the class is unknown, or `context` lacks the in-process server; CO_E_DLLNOTFOUND the module
/// cannot be loaded; CO_E_ERRORINDLL the module lacks the entry point; E_POINTER; E_OUTOFMEMORY; the code of a registry
/// file that cannot be read; or the module's own result. After a failure the slot is null.
HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, void* server, REFIID iid, void** out) noexcept;

/// CoGetClassObject, then one CreateInstance.
HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** out) noexcept;

/// Unloads every module that CoGetClassObject loaded and that reports that it is not in use. As everywhere in this
/// object model, no thread may still be inside the last Release of an object of such a module.
void CoFreeUnusedLibraries() noexcept;

/// The class identifier of a ProgID, with or without its version: from the announced classes, or from the registry
/// file. CO_E_CLASSSTRING the ProgID is unknown; E_POINTER; or the code of a registry file that cannot be read.
HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid) noexcept;
/// Reads "{8-4-4-4-12}" hexadecimal digits in either case; CO_E_CLASSSTRING, E_POINTER.
HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid) noexcept;
/// Writes "{8-4-4-4-12}" in upper case. Returns the number of units with the null, 39; 0 when `capacity` is less.
int StringFromGUID2(REFGUID guid, LPOLESTR text, int capacity) noexcept;

/// Returns a new string, which the caller frees with SysFreeString; null for a null text or when memory runs out.
BSTR SysAllocString(const OLECHAR* text) noexcept;
/// The same with a length in units; a null text gives `length` null units.
BSTR SysAllocStringLen(const OLECHAR* text, UINT length) noexcept;
/// Frees a string; null is allowed.
void SysFreeString(BSTR text) noexcept;
/// The length in units; 0 for null.
UINT SysStringLen(BSTR text) noexcept;
/// The length in bytes; 0 for null.
UINT SysStringByteLen(BSTR text) noexcept;

void VariantInit(VARIANT* value) noexcept;
/// Frees what the value owns (strings, interface pointers) and makes it VT_EMPTY. By-reference values own nothing.
HRESULT VariantClear(VARIANT* value) noexcept;

/// The calling thread's error information: Set replaces it (null clears), Get hands it out and clears it (S_FALSE and
/// null when there is none).
HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) noexcept;
HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) noexcept;
HRESULT CreateErrorInfo(ICreateErrorInfo** info) noexcept;

/// One class of a module that announces itself. Its ProgID is found with and without the version.
struct ZuClassEntry {
    CLSID clsid;
    const OLECHAR* progId;
};

using ZuGetClassObject = HRESULT (*)(REFCLSID clsid, REFIID iid, void** out);

/// Makes the classes of a module that is already in the process creatable without registration. `entries` must stay
/// valid until ZuWithdrawModule with the same function. Announcing twice is allowed and counts once.
HRESULT ZuAnnounceModule(const ZuClassEntry* entries, std::size_t count, ZuGetClassObject get) noexcept;
void ZuWithdrawModule(ZuGetClassObject get) noexcept;

/// The registry file (`$ZUREGISTRY`, otherwise `$XDG_DATA_HOME/zupolicymanager/registry`, otherwise
/// `$HOME/.local/share/zupolicymanager/registry`). Keys are paths below the classes root with `\` between names,
/// compared without regard to ASCII case; a null value name is the key's default value. Every change replaces the file
/// atomically under an advisory lock. Results: S_OK, 0x80070002 (no such key or value, no registry path), 0x8007000D
/// (the file is not in its format; it is not overwritten), 0x8007007B, 0x800700CE and 0x80070459 (the key or a text
/// cannot be kept), or the code of the failing file operation. docs/registry-file.md describes the format.
HRESULT ZuRegistryCreateKey(LPCOLESTR key) noexcept;
HRESULT ZuRegistrySetValue(LPCOLESTR key, LPCOLESTR name, LPCOLESTR value) noexcept;
/// Hands out a new string, which the caller frees with SysFreeString.
HRESULT ZuRegistryGetValue(LPCOLESTR key, LPCOLESTR name, BSTR* value) noexcept;
/// Removes the key with everything below it; S_OK also when it did not exist.
HRESULT ZuRegistryDeleteTree(LPCOLESTR key) noexcept;

}  // extern "C"
#pragma GCC visibility pop
