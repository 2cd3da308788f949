// Objects in their two forms, and the class object that makes them.
#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <stdexcept>

#include "Toy.h"
#include "com/ObjectForms.h"
#include "com/ObjectMap.h"
#include "tests/support/OuterObject.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {
namespace {

constexpr CLSID kToyClass{0x0D15EA5E, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr CLSID kOtherClass{0x0D15EA5F, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr WideLiteral kToyName{"Toy.1"};
constexpr ObjectMapRow kMap[] = {{kToyClass, kToyName.c_str(), &CreateObject<CToy>, 1}};

void* Poison()
{
    return reinterpret_cast<void*>(std::uintptr_t{0x5A5A5A5A});
}

class Forms : public testing::Test {
protected:
    Forms() { g_toyScript = {}; }
    ~Forms() override
    {
        EXPECT_EQ(g_toyScript.living, 0);
        EXPECT_FALSE(IsModuleLocked());
        g_toyScript = {};
    }
};

TEST_F(Forms, PlainObject_OffersItsFourInterfacesAndNoOther)
{
    zupm::ComPtr<IUnknown> object;
    ASSERT_EQ(CreateObject<CToy>(nullptr, IID_IUnknown, object.PutVoid()), S_OK);
    for (const IID& iid : {IID_IUnknown, IID_IDispatch, IID_ITaskInfo, IID_ISupportErrorInfo}) {
        zupm::ComPtr<IUnknown> found;
        EXPECT_EQ(object.Query(iid, found), S_OK);
        zupm::ComPtr<IUnknown> identity;
        ASSERT_EQ(found.Query(IID_IUnknown, identity), S_OK);
        EXPECT_EQ(identity.Get(), object.Get());
    }
    void* out = Poison();
    EXPECT_EQ(object->QueryInterface(IID_IPolicyFile, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Forms, PlainObject_GoesWithItsLastReference)
{
    zupm::ComPtr<ITaskInfo> object;
    ASSERT_EQ(CreateObject<CToy>(nullptr, IID_ITaskInfo, object.PutVoid()), S_OK);
    EXPECT_EQ(object->AddRef(), 2U);
    EXPECT_EQ(object->Release(), 1U);
    EXPECT_EQ(g_toyScript.living, 1);
    EXPECT_TRUE(IsModuleLocked());
    object.Reset();
    EXPECT_EQ(g_toyScript.living, 0);
    EXPECT_FALSE(IsModuleLocked());
}

TEST_F(Forms, CreateObject_LeavesNothingWhenTheInterfaceIsUnknown)
{
    void* out = Poison();
    EXPECT_EQ(CreateObject<CToy>(nullptr, IID_IPolicyFile, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(CreateObject<CToy>(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Forms, CreateObject_GivesTheCodeOfAFailedConstruction)
{
    g_toyScript.constructed = result::GeneralFailure;
    void* out = Poison();
    EXPECT_EQ(CreateObject<CToy>(nullptr, IID_IUnknown, &out), result::GeneralFailure);
    EXPECT_EQ(out, nullptr);
    OuterObject outer;
    out = Poison();
    EXPECT_EQ(CreateObject<CToy>(&outer, IID_IUnknown, &out), result::GeneralFailure);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(outer.references, 1U);
}

TEST_F(Forms, CreateObject_TurnsExceptionsOfConstructionIntoCodes)
{
    zupm::ComPtr<IUnknown> object;
    g_toyScript.onConstruct = [] { throw std::bad_alloc(); };
    EXPECT_EQ(CreateObject<CToy>(nullptr, IID_IUnknown, object.PutVoid()), result::OutOfMemory);
    g_toyScript.onConstruct = [] { throw std::runtime_error("refused"); };
    EXPECT_EQ(CreateObject<CToy>(nullptr, IID_IUnknown, object.PutVoid()), result::Unexpected);
    EXPECT_FALSE(object);
}

TEST_F(Forms, CreatePlain_HandsOutTheClassItself)
{
    zupm::ComPtr<CToy> toy;
    ASSERT_EQ(CreatePlain(toy), S_OK);
    EXPECT_EQ(toy->GetNext(nullptr, nullptr), result::EndOfList);
    g_toyScript.constructed = result::ElementMissing;
    EXPECT_EQ(CreatePlain(toy), result::ElementMissing);
    EXPECT_FALSE(toy);
}

TEST_F(Forms, AggregatedObject_HandsIdentityAndReferencesToTheOuterObject)
{
    OuterObject outer;
    ASSERT_EQ(CreateObject<CToy>(&outer, IID_IUnknown, outer.inner.PutVoid()), S_OK);
    zupm::ComPtr<ITaskInfo> toy;
    ASSERT_EQ(outer.QueryInterface(IID_ITaskInfo, toy.PutVoid()), S_OK);
    EXPECT_EQ(outer.references, 2U);
    zupm::ComPtr<IUnknown> identity;
    ASSERT_EQ(toy.Query(IID_IUnknown, identity), S_OK);
    EXPECT_EQ(identity.Get(), &outer);
    zupm::ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(toy.Query(IID_ISupportErrorInfo, support), S_OK);
    EXPECT_EQ(outer.references, 4U);
    support.Reset();
    identity.Reset();
    toy.Reset();
    EXPECT_EQ(outer.references, 1U);
    EXPECT_EQ(g_toyScript.living, 1);
    EXPECT_TRUE(IsModuleLocked());
}

TEST_F(Forms, AggregatedObject_AnswersForItsOwnIdentityOnItsInnerUnknown)
{
    OuterObject outer;
    ASSERT_EQ(CreateObject<CToy>(&outer, IID_IUnknown, outer.inner.PutVoid()), S_OK);
    zupm::ComPtr<IUnknown> again;
    ASSERT_EQ(outer.inner->QueryInterface(IID_IUnknown, again.PutVoid()), S_OK);
    EXPECT_EQ(again.Get(), outer.inner.Get());
    EXPECT_EQ(outer.references, 1U);
    void* out = Poison();
    EXPECT_EQ(outer.inner->QueryInterface(IID_IPolicyFile, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(outer.inner->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Forms, AggregatedObject_MayOnlyBeAskedForItsInnerUnknown)
{
    OuterObject outer;
    void* out = Poison();
    EXPECT_EQ(CreateObject<CToy>(&outer, IID_ITaskInfo, &out), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Forms, ClassFactory_CreatesPlainAndAggregatedObjects)
{
    zupm::ComPtr<IClassFactory> factory;
    ASSERT_EQ(GetClassObject(kMap, kToyClass, IID_IClassFactory, factory.PutVoid()), S_OK);
    zupm::ComPtr<ITaskInfo> plain;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_ITaskInfo, plain.PutVoid()), S_OK);
    OuterObject outer;
    EXPECT_EQ(factory->CreateInstance(&outer, IID_IUnknown, outer.inner.PutVoid()), S_OK);
    EXPECT_EQ(g_toyScript.living, 2);
}

TEST_F(Forms, ClassFactory_OffersItsTwoInterfacesAndNoOther)
{
    zupm::ComPtr<IClassFactory> factory;
    ASSERT_EQ(GetClassObject(kMap, kToyClass, IID_IUnknown, factory.PutVoid()), S_OK);
    zupm::ComPtr<IClassFactory> again;
    EXPECT_EQ(factory.Query(IID_IClassFactory, again), S_OK);
    void* out = Poison();
    EXPECT_EQ(factory->QueryInterface(IID_IDispatch, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(Forms, ClassFactory_KeepsTheModuleLoadedUntilEveryServerLockIsGone)
{
    zupm::ComPtr<IClassFactory> factory;
    ASSERT_EQ(GetClassObject(kMap, kToyClass, IID_IClassFactory, factory.PutVoid()), S_OK);
    EXPECT_TRUE(IsModuleLocked());
    EXPECT_EQ(factory->LockServer(1), S_OK);
    EXPECT_EQ(factory->LockServer(1), S_OK);
    EXPECT_EQ(factory->LockServer(0), S_OK);
    factory.Reset();
    EXPECT_TRUE(IsModuleLocked());
    ASSERT_EQ(GetClassObject(kMap, kToyClass, IID_IClassFactory, factory.PutVoid()), S_OK);
    EXPECT_EQ(factory->LockServer(0), S_OK);
    factory.Reset();
    EXPECT_FALSE(IsModuleLocked());
}

TEST_F(Forms, GetClassObject_RefusesUnknownClassesAndInterfaces)
{
    void* out = Poison();
    EXPECT_EQ(GetClassObject(kMap, kOtherClass, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(out, nullptr);
    out = Poison();
    EXPECT_EQ(GetClassObject(kMap, kToyClass, IID_ITaskInfo, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(GetClassObject(kMap, kToyClass, IID_IClassFactory, nullptr), E_POINTER);
}

}  // namespace
}  // namespace zupm::test
