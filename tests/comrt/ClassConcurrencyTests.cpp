// Class objects asked for, announced, withdrawn and freed by many threads at once.
#include <atomic>
#include <thread>
#include <vector>

#include "tests/comrt/ClassTest.h"
#include "tests/comrt/ToyModule.h"

namespace zupm::test {
namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 100;
constexpr CLSID kOwnClass{0x5E0E0005, 0x0005, 0x4005, {0x80, 0, 0, 0, 0, 0, 0, 5}};
constexpr ZuClassEntry kOwnEntries[] = {{kOwnClass, u"Toy.Busy.1"}};

HRESULT OwnClassObject(REFCLSID clsid, REFIID iid, void** out)
{
    return ToyClassObject(kOwnClass, clsid, iid, out);
}

class ClassConcurrency : public ClassTest {
protected:
    template <class Work>
    static void OnAllThreads(const Work& work)
    {
        std::vector<std::thread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&work, thread] {
                for (int round = 0; round < kRounds; ++round) {
                    work(thread, round);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
};

TEST_F(ClassConcurrency, EightThreadsCreateFromARegisteredModuleOnItsFirstLoad)
{
    Register(kQuietClass, QUIET_MODULE);
    std::atomic<int> created{0};
    OnAllThreads([&](int, int) {
        ComPtr<IUnknown> object;
        created += CreateObject(kQuietClass, object) == S_OK && object ? 1 : 0;
    });
    EXPECT_EQ(created, kThreads * kRounds);
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsLoaded(QUIET_MODULE));
}

TEST_F(ClassConcurrency, ModulesAreFreedWhileOtherThreadsCreate)
{
    Register(kQuietClass, QUIET_MODULE);
    Register(kAnnouncedClass, ANNOUNCING_MODULE);
    // The threads keep the objects until all have ended: a module may only be unloaded while none of its code
    // runs, and a thread that returns from a last Release still runs it.
    std::vector<std::vector<ComPtr<IUnknown>>> kept(kThreads);
    std::atomic<int> created{0};
    OnAllThreads([&](int thread, int round) {
        if (round % 10 == thread) {
            CoFreeUnusedLibraries();
        }
        ComPtr<IUnknown> object;
        created += CreateObject(round % 2 == 0 ? kQuietClass : kAnnouncedClass, object) == S_OK ? 1 : 0;
        kept[static_cast<std::size_t>(thread)].push_back(object);
    });
    EXPECT_EQ(created, kThreads * kRounds);
    kept.clear();
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsLoaded(QUIET_MODULE));
    EXPECT_FALSE(IsLoaded(ANNOUNCING_MODULE));
}

TEST_F(ClassConcurrency, FreeingFromEightThreadsAtOnceUnloadsAtMostOnce)
{
    Register(kQuietClass, QUIET_MODULE);
    for (int round = 0; round < 20; ++round) {
        ComPtr<IUnknown> object;
        ASSERT_EQ(CreateObject(kQuietClass, object), S_OK);
        object.Reset();
        std::vector<std::thread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([] { CoFreeUnusedLibraries(); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        CoFreeUnusedLibraries();
        EXPECT_FALSE(IsLoaded(QUIET_MODULE));
    }
}

TEST_F(ClassConcurrency, AnnouncingAndWithdrawingDisturbsNobody)
{
    ASSERT_EQ(ZuAnnounceModule(kOwnEntries, 1, &OwnClassObject), S_OK);
    OnAllThreads([&](int thread, int) {
        ComPtr<IUnknown> object;
        CLSID clsid{};
        if (thread == 0) {
            ZuWithdrawModule(&OwnClassObject);
            EXPECT_EQ(ZuAnnounceModule(kOwnEntries, 1, &OwnClassObject), S_OK);
        } else {
            const HRESULT created = CreateObject(kOwnClass, object);
            EXPECT_TRUE(created == S_OK || created == REGDB_E_CLASSNOTREG) << created;
            const HRESULT named = CLSIDFromProgID(u"Toy.Busy", &clsid);
            EXPECT_TRUE(named == S_OK || named == CO_E_CLASSSTRING) << named;
        }
    });
    ZuWithdrawModule(&OwnClassObject);
}

}  // namespace
}  // namespace zupm::test
