// The real module: what it exports, and its life in a process.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "tests/module/native/ModuleFile.h"
#include "tests/support/ComPtr.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

namespace {

const char* const kRuntimeFunctions[] = {
    "CLSIDFromProgID",      "CLSIDFromString",    "CoCreateInstance",   "CoFreeUnusedLibraries", "CoGetClassObject",
    "CoInitializeEx",       "CoUninitialize",     "CreateErrorInfo",    "GetErrorInfo",          "SetErrorInfo",
    "StringFromGUID2",      "SysAllocString",     "SysAllocStringLen",  "SysFreeString",         "SysStringByteLen",
    "SysStringLen",         "VariantClear",       "VariantInit",        "ZuAnnounceModule",      "ZuRegistryCreateKey",
    "ZuRegistryDeleteTree", "ZuRegistryGetValue", "ZuRegistrySetValue", "ZuWithdrawModule"};

class LoadedModuleFile : public testing::Test {
protected:
    [[nodiscard]] static bool IsLoaded()
    {
        void* handle = ::dlopen(ModulePath().c_str(), RTLD_NOW | RTLD_NOLOAD);
        if (handle != nullptr) {
            ::dlclose(handle);
        }
        return handle != nullptr;
    }
    /// What a program prints.
    [[nodiscard]] static std::string OutputOf(const std::string& command)
    {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
        std::string output;
        for (int c = 0; pipe != nullptr && (c = std::fgetc(pipe.get())) != EOF;) {
            output += static_cast<char>(c);
        }
        return output;
    }

    [[nodiscard]] static std::set<std::string> ExportsOf(const std::filesystem::path& library)
    {
        std::istringstream listing(OutputOf("nm -D --defined-only --format=posix '" + library.string() + "'"));
        std::set<std::string> names;
        for (std::string line; std::getline(listing, line);) {
            names.insert(line.substr(0, line.find(' ')));
        }
        return names;
    }

    OwnRegistry m_registry;
};

}  // namespace

TEST_F(LoadedModuleFile, ExportsExactlyFourEntryPoints)
{
    EXPECT_EQ(ExportsOf(ModulePath()), (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject",
                                                              "DllRegisterServer", "DllUnregisterServer"}));
}

TEST_F(LoadedModuleFile, RuntimeExportsExactlyTheFunctionsOfItsHeader)
{
    EXPECT_EQ(ExportsOf(ModulePath().parent_path() / "libzucomrt.so"),
              std::set<std::string>(std::begin(kRuntimeFunctions), std::end(kRuntimeFunctions)));
}

TEST_F(LoadedModuleFile, RightAfterLoading_CanBeUnloaded)
{
    const ModuleFile module;
    EXPECT_EQ(module.Call("DllCanUnloadNow"), S_OK);
}

TEST_F(LoadedModuleFile, WhileAnObjectLives_CannotBeUnloaded)
{
    const ModuleFile module;
    ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    EXPECT_EQ(module.Call("DllCanUnloadNow"), S_FALSE);
    file.Reset();
    EXPECT_EQ(module.Call("DllCanUnloadNow"), S_OK);
}

TEST_F(LoadedModuleFile, WhileAServerLockIsHeld_CannotBeUnloaded)
{
    const ModuleFile module;
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(module.GetClassObject(CLSID_TaskInfo, IID_IClassFactory, factory.PutVoid()), S_OK);
    ASSERT_EQ(factory->LockServer(1), S_OK);
    factory.Reset();
    EXPECT_EQ(module.Call("DllCanUnloadNow"), S_FALSE);
    ASSERT_EQ(module.GetClassObject(CLSID_PolicyFile, IID_IClassFactory, factory.PutVoid()), S_OK);
    ASSERT_EQ(factory->LockServer(0), S_OK);
    factory.Reset();
    EXPECT_EQ(module.Call("DllCanUnloadNow"), S_OK);
}

TEST_F(LoadedModuleFile, AnnouncesItsClassesAsLongAsItIsLoaded)
{
    ComPtr<ITaskInfo> object;
    EXPECT_EQ(TryCreate(object), REGDB_E_CLASSNOTREG);
    {
        const ModuleFile module;
        EXPECT_EQ(TryCreate(object), S_OK);
        object.Reset();
    }
    EXPECT_FALSE(IsLoaded());
    EXPECT_EQ(TryCreate(object), REGDB_E_CLASSNOTREG);
}

TEST_F(LoadedModuleFile, Registered_IsLoadedByTheRuntimeAndGoesWhenItIsUnused)
{
    ASSERT_EQ(ModuleFile().Call("DllRegisterServer"), S_OK);
    ASSERT_FALSE(IsLoaded());
    CLSID clsid{};
    ASSERT_EQ(CLSIDFromProgID(u"ZuPolicyManager.PolicyFile", &clsid), S_OK);
    EXPECT_TRUE(clsid == CLSID_PolicyFile);
    {
        PolicyFileClient file;
        EXPECT_TRUE(IsLoaded());
        TempFolder folder;
        EXPECT_EQ(file.Load(folder.Write(u"p.xml", "<F><PolicyRoot version='7'/></F>")), 0);
        EXPECT_EQ(file.VersionPolicy(), (TextResult{0, u"7"}));
        CoFreeUnusedLibraries();
        EXPECT_TRUE(IsLoaded()) << "an object lives";
    }
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsLoaded());
}

TEST_F(LoadedModuleFile, LoadedAndUnloadedManyTimes_StaysSound)
{
    for (int i = 0; i < 100; ++i) {
        const ModuleFile module;
        ComPtr<IPolicyProduct> product = Create<IPolicyProduct>();
        const Bstr name(u"x");
        EXPECT_EQ(product->RemoveSection(name.Get()), result::SectionNotFound);
    }
    EXPECT_FALSE(IsLoaded());
}

TEST_F(LoadedModuleFile, WithoutItsResourceModule_CreatesNoObject)
{
    TempFolder folder;
    const std::filesystem::path copy = folder.Folder() / "libzuPolicyManager64.so";
    std::filesystem::copy_file(ModulePath(), copy);
    const ModuleFile module(copy);
    for (const CLSID* clsid : {&CLSID_TaskInfo, &CLSID_PolicyTask, &CLSID_PolicyProduct, &CLSID_PolicyFile}) {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(module.GetClassObject(*clsid, IID_IClassFactory, factory.PutVoid()), S_OK);
        ComPtr<IUnknown> object;
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, object.PutVoid()), result::GeneralFailure);
        EXPECT_FALSE(object);
    }
    EXPECT_EQ(module.Call("DllCanUnloadNow"), S_OK);
}

}  // namespace zupm::test
