/// Classes registered in a registry file of the test's own.
#pragma once

#include <dlfcn.h>

#include "tests/comrt/RegistryTest.h"
#include "tests/support/ComPtr.h"

namespace zupm::test {

class ClassTest : public RegistryTest {
protected:
    /// Modules that the last test left loaded are unloaded before the next test begins.
    ~ClassTest() override { CoFreeUnusedLibraries(); }

    static void Register(REFCLSID clsid, std::string_view path)
    {
        ASSERT_EQ(ZuRegistrySetValue((u"CLSID\\" + TextOf(clsid) + u"\\InprocServer32").c_str(), nullptr,
                                     Utf16(path).c_str()),
                  S_OK);
    }
    [[nodiscard]] static HRESULT CreateObject(REFCLSID clsid, ComPtr<IUnknown>& object)
    {
        return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.PutVoid());
    }
    [[nodiscard]] static std::u16string TextOf(REFGUID guid)
    {
        OLECHAR text[39]{};
        EXPECT_EQ(StringFromGUID2(guid, text, 39), 39);
        return text;
    }
    /// Whether the module is in the process.
    [[nodiscard]] static bool IsLoaded(const char* path)
    {
        void* handle = ::dlopen(path, RTLD_NOW | RTLD_NOLOAD);
        if (handle != nullptr) {
            ::dlclose(handle);
        }
        return handle != nullptr;
    }
};

}  // namespace zupm::test
