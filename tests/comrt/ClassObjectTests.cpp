#include "tests/comrt/ClassTest.h"
#include "tests/comrt/CountedObject.h"
#include "tests/comrt/ToyModule.h"

namespace zupm::test {
namespace {

constexpr CLSID kOwnClass{0x5E0E0003, 0x0003, 0x4003, {0x80, 0, 0, 0, 0, 0, 0, 3}};
constexpr CLSID kOtherClass{0x5E0E0004, 0x0004, 0x4004, {0x80, 0, 0, 0, 0, 0, 0, 4}};
constexpr ZuClassEntry kOwnEntries[] = {{kOwnClass, u"Toy.Own.2"}, {kOtherClass, nullptr}};

HRESULT OwnClassObject(REFCLSID clsid, REFIID iid, void** out)
{
    return ToyClassObject(kOwnClass, clsid, iid, out);
}

HRESULT ForgetfulClassObject(REFCLSID /*clsid*/, REFIID /*iid*/, void** /*out*/)
{
    return S_OK;
}

/// A module that needs another class, and announces more, while it is asked.
HRESULT ReentrantClassObject(REFCLSID /*clsid*/, REFIID iid, void** out)
{
    EXPECT_EQ(ZuAnnounceModule(kOwnEntries, 2, &OwnClassObject), S_OK);
    const HRESULT inner = CoGetClassObject(kOwnClass, CLSCTX_INPROC_SERVER, nullptr, iid, out);
    CoFreeUnusedLibraries();
    ZuWithdrawModule(&OwnClassObject);
    return inner;
}

/// Announces for a scope.
class Announced {
public:
    Announced(const ZuClassEntry* entries, std::size_t count, ZuGetClassObject get) : m_get(get)
    {
        EXPECT_EQ(ZuAnnounceModule(entries, count, get), S_OK);
    }
    ~Announced() { ZuWithdrawModule(m_get); }
    Announced(const Announced&) = delete;
    Announced& operator=(const Announced&) = delete;

private:
    ZuGetClassObject m_get;
};

class ClassObject : public ClassTest {};

TEST_F(ClassObject, Initialize_TakesNoReservedArgument)
{
    int something = 0;
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    EXPECT_EQ(CoInitializeEx(&something, COINIT_MULTITHREADED), E_INVALIDARG);
    CoUninitialize();
    CoUninitialize();
}

TEST_F(ClassObject, AnUnknownClassIsNotRegisteredAndTheOutIsNull)
{
    void* out = &out;
    EXPECT_EQ(CoGetClassObject(kOwnClass, CLSCTX_ALL, nullptr, IID_IClassFactory, &out), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(out, nullptr);
    out = &out;
    EXPECT_EQ(CoCreateInstance(kOwnClass, nullptr, CLSCTX_ALL, IID_IUnknown, &out), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(out, nullptr);
}

TEST_F(ClassObject, NullOutsAreRefused)
{
    EXPECT_EQ(CoGetClassObject(kOwnClass, CLSCTX_ALL, nullptr, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(CoCreateInstance(kOwnClass, nullptr, CLSCTX_ALL, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(CLSIDFromProgID(u"Toy.Own", nullptr), E_POINTER);
    EXPECT_EQ(ZuAnnounceModule(kOwnEntries, 2, nullptr), E_POINTER);
    EXPECT_EQ(ZuAnnounceModule(nullptr, 2, &OwnClassObject), E_POINTER);
}

TEST_F(ClassObject, OnlyAContextWithTheInProcessServerFindsClasses)
{
    const Announced announced(kOwnEntries, 2, &OwnClassObject);
    ComPtr<IUnknown> object;
    for (const DWORD context : {DWORD{0}, CLSCTX_INPROC_HANDLER, CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER}) {
        EXPECT_EQ(CoCreateInstance(kOwnClass, nullptr, context, IID_IUnknown, object.PutVoid()), REGDB_E_CLASSNOTREG);
    }
    EXPECT_EQ(CoCreateInstance(kOwnClass, nullptr, CLSCTX_ALL, IID_IUnknown, object.PutVoid()), S_OK);
}

TEST_F(ClassObject, AnAnnouncedClassNeedsNoRegistrationUntilItIsWithdrawn)
{
    ComPtr<IUnknown> object;
    {
        const Announced announced(kOwnEntries, 2, &OwnClassObject);
        EXPECT_EQ(CreateObject(kOwnClass, object), S_OK);
        EXPECT_TRUE(object);
        // The module's own answer for a class that it announced and does not have.
        EXPECT_EQ(CreateObject(kOtherClass, object), CLASS_E_CLASSNOTAVAILABLE);
    }
    EXPECT_EQ(CreateObject(kOwnClass, object), REGDB_E_CLASSNOTREG);
}

TEST_F(ClassObject, AnnouncingTwiceCountsOnce)
{
    const Announced announced(kOwnEntries, 2, &OwnClassObject);
    {
        const Announced again(kOwnEntries, 2, &OwnClassObject);
    }
    ComPtr<IUnknown> object;
    EXPECT_EQ(CreateObject(kOwnClass, object), REGDB_E_CLASSNOTREG);
}

TEST_F(ClassObject, AnAnnouncedClassIsPreferredToARegisteredOne)
{
    Register(kOwnClass, EMPTY_MODULE);
    ComPtr<IUnknown> object;
    EXPECT_EQ(CreateObject(kOwnClass, object), CO_E_ERRORINDLL);
    const Announced announced(kOwnEntries, 2, &OwnClassObject);
    EXPECT_EQ(CreateObject(kOwnClass, object), S_OK);
}

TEST_F(ClassObject, AModuleMayCallTheRuntimeWhileItIsAsked)
{
    constexpr ZuClassEntry kEntries[] = {{kOtherClass, nullptr}};
    const Announced announced(kEntries, 1, &ReentrantClassObject);
    ComPtr<IUnknown> object;
    EXPECT_EQ(CreateObject(kOtherClass, object), S_OK);
}

TEST_F(ClassObject, AModuleThatSucceedsWithoutAnObjectIsAnError)
{
    const Announced announced(kOwnEntries, 1, &ForgetfulClassObject);
    ComPtr<IUnknown> object;
    EXPECT_EQ(CreateObject(kOwnClass, object), E_UNEXPECTED);
    void* out = &out;
    EXPECT_EQ(CoGetClassObject(kOwnClass, CLSCTX_ALL, nullptr, IID_IClassFactory, &out), E_UNEXPECTED);
    EXPECT_EQ(out, nullptr);
}

TEST_F(ClassObject, AFailedCreationClearsTheOut)
{
    const Announced announced(kOwnEntries, 2, &OwnClassObject);
    CountedObject outer;
    void* out = &out;
    EXPECT_EQ(CoCreateInstance(kOwnClass, nullptr, CLSCTX_ALL, IID_IDispatch, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(CoCreateInstance(kOwnClass, &outer, CLSCTX_ALL, IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(CoGetClassObject(kOwnClass, CLSCTX_ALL, nullptr, IID_IDispatch, &out), E_NOINTERFACE);
}

TEST_F(ClassObject, ARegisteredClassLoadsItsModuleAndFreeingKeepsItWhileAnObjectLives)
{
    Register(kQuietClass, QUIET_MODULE);
    ASSERT_FALSE(IsLoaded(QUIET_MODULE));
    ComPtr<IUnknown> object;
    ASSERT_EQ(CreateObject(kQuietClass, object), S_OK);
    EXPECT_TRUE(IsLoaded(QUIET_MODULE));
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsLoaded(QUIET_MODULE));
    object.Reset();
    EXPECT_TRUE(IsLoaded(QUIET_MODULE));
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsLoaded(QUIET_MODULE));
    EXPECT_EQ(CreateObject(kQuietClass, object), S_OK);
}

TEST_F(ClassObject, AServerLockKeepsTheModule)
{
    Register(kQuietClass, QUIET_MODULE);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(CoGetClassObject(kQuietClass, CLSCTX_ALL, nullptr, IID_IClassFactory, factory.PutVoid()), S_OK);
    EXPECT_EQ(factory->LockServer(1), S_OK);
    CoFreeUnusedLibraries();
    ASSERT_TRUE(IsLoaded(QUIET_MODULE));
    EXPECT_EQ(factory->LockServer(0), S_OK);
    factory.Reset();
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsLoaded(QUIET_MODULE));
}

TEST_F(ClassObject, AModuleThatAnnouncesItselfWhileLoadingIsStillUnloadedAndLoadedAgain)
{
    Register(kAnnouncedClass, ANNOUNCING_MODULE);
    for (int round = 0; round < 3; ++round) {
        ComPtr<IUnknown> first;
        ComPtr<IUnknown> second;
        ASSERT_EQ(CreateObject(kAnnouncedClass, first), S_OK);
        ASSERT_EQ(CreateObject(kAnnouncedClass, second), S_OK);
        first.Reset();
        CoFreeUnusedLibraries();
        EXPECT_TRUE(IsLoaded(ANNOUNCING_MODULE));
        second.Reset();
        CoFreeUnusedLibraries();
        EXPECT_FALSE(IsLoaded(ANNOUNCING_MODULE));
    }
}

TEST_F(ClassObject, AModuleOfTheProcessAnnouncesItselfAndIsNotUnloaded)
{
    void* module = ::dlopen(ANNOUNCING_MODULE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr);
    ComPtr<IUnknown> object;
    EXPECT_EQ(CreateObject(kAnnouncedClass, object), S_OK);
    object.Reset();
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsLoaded(ANNOUNCING_MODULE));
    ::dlclose(module);
    EXPECT_EQ(CreateObject(kAnnouncedClass, object), REGDB_E_CLASSNOTREG);
}

TEST_F(ClassObject, TheModulesOwnResultPasses)
{
    Register(kOtherClass, QUIET_MODULE);
    ComPtr<IUnknown> object;
    EXPECT_EQ(CreateObject(kOtherClass, object), CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(ClassObject, AModuleWithoutTheEntryPointIsRefusedAndNotKept)
{
    Register(kOwnClass, EMPTY_MODULE);
    ComPtr<IUnknown> object;
    EXPECT_EQ(CreateObject(kOwnClass, object), CO_E_ERRORINDLL);
    EXPECT_FALSE(IsLoaded(EMPTY_MODULE));
}

TEST_F(ClassObject, AModuleThatCannotBeLoadedIsNotFound)
{
    m_folder.Write(u"text.so", "no module");
    ComPtr<IUnknown> object;
    for (const std::string& path : {m_folder.Folder().string() + "/missing.so", m_folder.Folder().string() + "/text.so",
                                    m_folder.Folder().string(), std::string()}) {
        Register(kOwnClass, path);
        EXPECT_EQ(CreateObject(kOwnClass, object), CO_E_DLLNOTFOUND) << path;
    }
}

TEST_F(ClassObject, APathThatIsNotAbsoluteIsNeverSearchedFor)
{
    const std::filesystem::path module(QUIET_MODULE);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(module.parent_path());
    ComPtr<IUnknown> object;
    for (const std::string& path : {module.filename().string(), "./" + module.filename().string(),
                                    "../" + module.parent_path().filename().string() + "/" + module.filename().string(),
                                    std::string("libc.so.6")}) {
        Register(kQuietClass, path);
        EXPECT_EQ(CreateObject(kQuietClass, object), CO_E_DLLNOTFOUND) << path;
    }
    std::filesystem::current_path(before);
}

TEST_F(ClassObject, ARegistryFileThatCannotBeReadGivesItsCode)
{
    m_folder.Write(u"registry", "nonsense\n");
    ComPtr<IUnknown> object;
    CLSID clsid{};
    EXPECT_EQ(CreateObject(kQuietClass, object), static_cast<HRESULT>(0x8007000Du));
    EXPECT_EQ(CLSIDFromProgID(u"Toy.Quiet", &clsid), static_cast<HRESULT>(0x8007000Du));
}

TEST_F(ClassObject, AnAnnouncedProgIdIsKnownWithAndWithoutItsVersionInEitherCase)
{
    const Announced announced(kOwnEntries, 2, &OwnClassObject);
    for (const OLECHAR* progId : {u"Toy.Own.2", u"Toy.Own", u"toy.own", u"TOY.OWN.2"}) {
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID(progId, &clsid), S_OK);
        EXPECT_EQ(clsid, kOwnClass);
    }
    for (const OLECHAR* progId : {u"Toy.Own.1", u"Toy.Own.", u"Toy", u"Toy.Own.22", u"", u"Toy.Own.2 "}) {
        CLSID clsid = kOwnClass;
        EXPECT_EQ(CLSIDFromProgID(progId, &clsid), CO_E_CLASSSTRING);
        EXPECT_EQ(clsid, GUID_NULL);
    }
}

TEST_F(ClassObject, ARegisteredProgIdIsFoundByItsClassAndByItsCurrentVersion)
{
    const std::u16string text = TextOf(kQuietClass);
    ASSERT_EQ(ZuRegistrySetValue(u"Toy.Quiet.1\\CLSID", nullptr, text.c_str()), S_OK);
    ASSERT_EQ(ZuRegistrySetValue(u"Toy.Quiet\\CLSID", nullptr, text.c_str()), S_OK);
    ASSERT_EQ(ZuRegistrySetValue(u"Toy.Current\\CurVer", nullptr, u"Toy.Quiet.1"), S_OK);
    for (const OLECHAR* progId : {u"Toy.Quiet.1", u"toy.quiet", u"Toy.Current"}) {
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID(progId, &clsid), S_OK);
        EXPECT_EQ(clsid, kQuietClass);
    }
}

TEST_F(ClassObject, ABadRegisteredProgIdIsNoClass)
{
    ASSERT_EQ(ZuRegistrySetValue(u"Toy.Bad\\CLSID", nullptr, u"not an identifier"), S_OK);
    ASSERT_EQ(ZuRegistrySetValue(u"Toy.Loop\\CurVer", nullptr, u"Toy.Loop"), S_OK);
    ASSERT_EQ(ZuRegistrySetValue(u"Toy.Gone\\CurVer", nullptr, u"Toy.Gone.1"), S_OK);
    ASSERT_EQ(ZuRegistrySetValue(u"Outer\\Toy\\CLSID", nullptr, TextOf(kQuietClass).c_str()), S_OK);
    for (const OLECHAR* progId : {u"Toy.Bad", u"Toy.Loop", u"Toy.Gone", u"Outer\\Toy", u"Toy.Missing"}) {
        CLSID clsid = kOwnClass;
        EXPECT_EQ(CLSIDFromProgID(progId, &clsid), CO_E_CLASSSTRING);
        EXPECT_EQ(clsid, GUID_NULL);
    }
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(nullptr, &clsid), CO_E_CLASSSTRING);
}

}  // namespace
}  // namespace zupm::test
