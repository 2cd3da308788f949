// Objects of the four classes: how they are created, what they offer.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "module/ModuleServer.h"
#include "tests/module/Classes.h"
#include "tests/support/Bstr.h"

namespace zupm::test {

namespace {

constexpr GUID kUnknownId{0x7A4B1F0C, 0x2D5E, 0x4B63, {0x91, 0x1D, 0x3C, 0x55, 0x0E, 0x6F, 0x82, 0x19}};

/// The class object of a class; null when there is none.
ComPtr<IClassFactory> FactoryOf(REFCLSID clsid)
{
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.PutVoid()), S_OK);
    return factory;
}

}  // namespace

TEST(Creation, EveryClassOffersItsInterfaceAndThreeMore)
{
    for (const ClassRow& row : kClasses) {
        for (const IID* iid : {&row.iid, &IID_IUnknown, &IID_IDispatch, &IID_ISupportErrorInfo}) {
            ComPtr<IUnknown> object;
            EXPECT_EQ(CreateOf(row, nullptr, *iid, object), S_OK) << row.label;
            EXPECT_TRUE(object) << row.label;
        }
    }
}

TEST(Creation, NoClassOffersTheInterfaceOfAnother)
{
    for (const ClassRow& row : kClasses) {
        for (const ClassRow& other : kClasses) {
            ComPtr<IUnknown> object;
            EXPECT_EQ(CreateOf(row, nullptr, other.iid, object), &row == &other ? S_OK : E_NOINTERFACE)
                << row.label << " as " << other.label;
            EXPECT_EQ(static_cast<bool>(object), &row == &other);
        }
        ComPtr<IUnknown> object;
        EXPECT_EQ(CreateOf(row, nullptr, kUnknownId, object), E_NOINTERFACE) << row.label;
        EXPECT_FALSE(object) << row.label;
    }
}

TEST(Creation, EveryInterfaceOfAnObjectLeadsToTheSameIdentity)
{
    for (const ClassRow& row : kClasses) {
        ComPtr<IUnknown> object;
        ASSERT_EQ(CreateOf(row, nullptr, row.iid, object), S_OK);
        const ComPtr<IUnknown> identity = object.Query<IUnknown>();
        EXPECT_EQ(object.Query<IDispatch>().Query<IUnknown>().Get(), identity.Get()) << row.label;
        EXPECT_EQ(object.Query<ISupportErrorInfo>().Query<IUnknown>().Get(), identity.Get()) << row.label;
        EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER) << row.label;
    }
}

TEST(Creation, ReferencesAreCounted)
{
    for (const ClassRow& row : kClasses) {
        ComPtr<IUnknown> object;
        ASSERT_EQ(CreateOf(row, nullptr, IID_IUnknown, object), S_OK);
        EXPECT_EQ(object->AddRef(), 2U) << row.label;
        EXPECT_EQ(object->AddRef(), 3U) << row.label;
        EXPECT_EQ(object->Release(), 2U) << row.label;
        EXPECT_EQ(object->Release(), 1U) << row.label;
    }
}

TEST(Creation, FactoriesCreateObjectsAndOfferNothingElse)
{
    for (const ClassRow& row : kClasses) {
        const ComPtr<IClassFactory> factory = FactoryOf(row.clsid);
        ASSERT_TRUE(factory) << row.label;
        EXPECT_FALSE(factory.Query<IDispatch>()) << row.label;
        EXPECT_TRUE(factory.Query<IUnknown>()) << row.label;
        ComPtr<IUnknown> object;
        EXPECT_EQ(factory->CreateInstance(nullptr, row.iid, object.PutVoid()), S_OK) << row.label;
        EXPECT_TRUE(object) << row.label;
        EXPECT_EQ(factory->CreateInstance(nullptr, row.iid, nullptr), E_POINTER) << row.label;
        void* slot = &object;
        EXPECT_EQ(factory->CreateInstance(nullptr, kUnknownId, &slot), E_NOINTERFACE) << row.label;
        EXPECT_EQ(slot, nullptr) << row.label;
    }
}

TEST(Creation, UnknownClassesAndInterfacesAreRefused)
{
    void* slot = &slot;
    EXPECT_EQ(ModuleGetClassObject(kUnknownId, IID_IClassFactory, &slot), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(slot, nullptr);
    slot = &slot;
    EXPECT_EQ(ModuleGetClassObject(CLSID_PolicyFile, IID_IPolicyFile, &slot), E_NOINTERFACE);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(ModuleGetClassObject(CLSID_PolicyFile, IID_IClassFactory, nullptr), E_POINTER);
    slot = &slot;
    EXPECT_EQ(CoCreateInstance(kUnknownId, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, &slot), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(slot, nullptr);
}

TEST(Creation, ByManyThreadsAtOnceAlwaysSucceeds)
{
    constexpr int kThreads = 8;
    constexpr int kRounds = 200;
    std::vector<int> failures(kThreads, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&failures, t] {
            static_cast<void>(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
            for (int i = 0; i < kRounds; ++i) {
                ComPtr<IUnknown> object;
                const ClassRow& row = kClasses[(t + i) % 4];
                const bool made = CreateOf(row, nullptr, row.iid, object) == S_OK && object;
                failures[static_cast<std::size_t>(t)] += made ? 0 : 1;
            }
            CoUninitialize();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, std::vector<int>(kThreads, 0));
    EXPECT_EQ(ModuleCanUnloadNow(), S_OK);
}

TEST(Unloading, IsPossibleWhileNoObjectAndNoServerLockIsLeft)
{
    EXPECT_EQ(ModuleCanUnloadNow(), S_OK);
    for (const ClassRow& row : kClasses) {
        ComPtr<IUnknown> object;
        ASSERT_EQ(CreateOf(row, nullptr, row.iid, object), S_OK);
        EXPECT_EQ(ModuleCanUnloadNow(), S_FALSE) << row.label;
        object.Reset();
        EXPECT_EQ(ModuleCanUnloadNow(), S_OK) << row.label;
    }
    for (const BOOL lock : {1, 1, 0}) {
        ASSERT_EQ(FactoryOf(CLSID_PolicyFile)->LockServer(lock), S_OK);
        EXPECT_EQ(ModuleCanUnloadNow(), S_FALSE);
    }
    ASSERT_EQ(FactoryOf(CLSID_TaskInfo)->LockServer(0), S_OK);
    EXPECT_EQ(ModuleCanUnloadNow(), S_OK);
}

TEST(Unloading, IsNotPossibleWhileAnObjectThatAnotherHandedOutLives)
{
    ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    ComPtr<IPolicyTask> task;
    ASSERT_EQ(file->CreateTask(task.Put()), S_OK);
    file.Reset();
    EXPECT_EQ(ModuleCanUnloadNow(), S_FALSE);
    task.Reset();
    EXPECT_EQ(ModuleCanUnloadNow(), S_OK);
}

}  // namespace zupm::test
