// Objects made by the component runtime from the registered module: in both kinds of apartment, aggregated, and by many
// threads at once.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"
#include "tests/support/OuterObject.h"
#include "tests/support/TempFolder.h"
#include "tests/windows/Registration.h"

namespace zupm::test {

namespace {

/// Runs on a thread of its own that belongs to an apartment of the given kind.
void InApartment(DWORD kind, const std::function<void()>& work)
{
    std::thread([&] {
        ASSERT_EQ(CoInitializeEx(nullptr, kind), S_OK);
        work();
        CoUninitialize();
    }).join();
}

template <class Interface>
HRESULT CreateIn(ComPtr<Interface>& object, IUnknown* outer = nullptr)
{
    return CoCreateInstance(InterfaceTraits<Interface>::Class(), outer, CLSCTX_INPROC_SERVER,
                            InterfaceTraits<Interface>::Id(), object.PutVoid());
}

/// A proxy of the component runtime can be asked for several interfaces at once; our objects cannot.
bool IsProxy(IUnknown* object)
{
    ComPtr<IUnknown> several;
    return SUCCEEDED(object->QueryInterface(IID_IMultiQI, several.PutVoid()));
}

/// The whole of a product's life through its interface.
void UseProduct(IPolicyProduct& product)
{
    const Bstr id(u"PRODUCT-1");
    const Bstr section(u"General");
    const Bstr name(u"Name");
    const Bstr value(u"Gr\u00FC\u00DFe \U0001F600");
    EXPECT_EQ(product.put_SoftwareID(id.Get()), S_OK);
    EXPECT_EQ(product.PutSectionSetting(section.Get(), name.Get(), value.Get()), S_OK);
    Bstr read;
    EXPECT_EQ(product.GetSectionSetting(section.Get(), name.Get(), read.Slot()), S_OK);
    EXPECT_EQ(read.Text(), value.Text());
    EXPECT_EQ(product.GetSectionSetting(name.Get(), name.Get(), read.Slot()), result::SectionNotFound);
}

class ActivationTest : public testing::Test {
protected:
    static void SetUpTestSuite() { ASSERT_EQ(RunRegistration({}), 0u); }
    static void TearDownTestSuite() { EXPECT_EQ(RunRegistration({L"/u"}), 0u); }
};

}  // namespace

TEST_F(ActivationTest, EveryClass_CanBeCreatedByClassIdentifierAndByProgId)
{
    InApartment(COINIT_MULTITHREADED, [] {
        const std::pair<const wchar_t*, CLSID> rows[] = {
            {L"ZuPolicyManager.TaskInfo", CLSID_TaskInfo},
            {L"ZuPolicyManager.PolicyTask", CLSID_PolicyTask},
            {L"ZuPolicyManager.PolicyProduct", CLSID_PolicyProduct},
            {L"ZuPolicyManager.PolicyFile", CLSID_PolicyFile},
        };
        for (const auto& [progId, clsid] : rows) {
            for (const std::wstring& name : {std::wstring(progId), std::wstring(progId) + L".1"}) {
                CLSID found{};
                ASSERT_EQ(CLSIDFromProgID(name.c_str(), &found), S_OK) << Narrow(name);
                EXPECT_TRUE(found == clsid) << Narrow(name);
            }
            ComPtr<IDispatch> object;
            EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.PutVoid()), S_OK)
                << Narrow(progId);
        }
    });
}

TEST_F(ActivationTest, InTheMultithreadedApartment_CallsAreDirect)
{
    InApartment(COINIT_MULTITHREADED, [] {
        ComPtr<IPolicyProduct> product;
        ASSERT_EQ(CreateIn(product), S_OK);
        EXPECT_FALSE(IsProxy(product.Get()));
        UseProduct(*product.Get());
    });
}

TEST_F(ActivationTest, InASinglethreadedApartment_CallsAreMarshalledByTheTypeLibrary)
{
    InApartment(COINIT_APARTMENTTHREADED, [] {
        ComPtr<IPolicyProduct> product;
        ASSERT_EQ(CreateIn(product), S_OK);
        EXPECT_TRUE(IsProxy(product.Get()));
        UseProduct(*product.Get());
    });
}

TEST_F(ActivationTest, ObjectsHandedOut_AreMarshalledToo)
{
    InApartment(COINIT_APARTMENTTHREADED, [] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        ComPtr<IPolicyProduct> product;
        ASSERT_EQ(file->CreatePolicy(product.Put()), S_OK);
        ASSERT_TRUE(product);
        UseProduct(*product.Get());
        ComPtr<IPolicyTask> task;
        ASSERT_EQ(file->CreateTask(task.Put()), S_OK);
        ASSERT_TRUE(task);
        LONG priority = -1;
        EXPECT_EQ(task->put_Priority(-5), S_OK);
        EXPECT_EQ(task->get_Priority(&priority), S_OK);
        EXPECT_EQ(priority, -5);
    });
}

TEST_F(ActivationTest, EditInterface_IsMarshalledWithItsArgumentsResultsAndCodes)
{
    const TempFolder folder;
    const std::u16string path = folder.Write(
        u"policy.xml",
        "<R><PolicyRoot version='1'><PolicyGroup><Policy><Product SoftwareID='A'/></Policy></PolicyGroup></PolicyRoot>"
        "<TaskRoot version='1'/></R>");
    InApartment(COINIT_APARTMENTTHREADED, [&] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        ComPtr<IPolicyFileEdit> edit = file.Query<IPolicyFileEdit>();
        ASSERT_TRUE(edit);
        EXPECT_TRUE(IsProxy(edit.Get()));
        const Bstr name(path);
        LONG changed = -5;
        EXPECT_EQ(edit->HasFileChanged(&changed), result::NotInitialised);
        EXPECT_EQ(edit->CommitEdit(0), result::NotInitialised);

        ASSERT_EQ(edit->OpenForEdit(name.Get(), 0), S_OK);
        EXPECT_EQ(edit->HasFileChanged(&changed), S_OK);
        EXPECT_EQ(changed, 0);
        ComPtr<IPolicyFile> second;
        ASSERT_EQ(CreateIn(second), S_OK);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(second.Query<IPolicyFileEdit>()->OpenForEdit(name.Get(), 200), result::FileLocked);
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(200));

        EXPECT_EQ(file->RemovePolicy(Bstr(u"A").Get()), S_OK) << "both interfaces work on the same document";
        EXPECT_EQ(edit->RehearseCommit(0), S_OK);
        const std::string theirs = folder.Read(u"policy.xml") + " ";
        folder.Write(u"policy.xml", theirs);
        EXPECT_EQ(edit->HasFileChanged(&changed), S_OK);
        EXPECT_EQ(changed, 1);
        EXPECT_EQ(edit->RehearseCommit(0), result::FileChanged);
        EXPECT_EQ(edit->CommitEdit(0), result::FileChanged);
        EXPECT_EQ(folder.Read(u"policy.xml"), theirs);
        EXPECT_EQ(edit->CommitEdit(1), S_OK);
        EXPECT_EQ(folder.Read(u"policy.xml").find("SoftwareID"), std::string::npos);

        ASSERT_EQ(edit->OpenForEdit(name.Get(), 0), S_OK);
        EXPECT_EQ(edit->EndEdit(), S_OK);
        EXPECT_EQ(edit->CommitEdit(0), result::NotInitialised);
    });
}

TEST_F(ActivationTest, EditInterface_PassesFromOneApartmentToAnother)
{
    const TempFolder folder;
    const std::u16string path = folder.Write(u"policy.xml", "<R><PolicyRoot/><TaskRoot/></R>");
    InApartment(COINIT_MULTITHREADED, [&] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        ComPtr<IPolicyFileEdit> edit = file.Query<IPolicyFileEdit>();
        EXPECT_FALSE(IsProxy(edit.Get()));
        IStream* stream = nullptr;
        ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IPolicyFileEdit, edit.Get(), &stream), S_OK);
        InApartment(COINIT_APARTMENTTHREADED, [&] {
            ComPtr<IPolicyFileEdit> proxy;
            ASSERT_EQ(CoGetInterfaceAndReleaseStream(stream, IID_IPolicyFileEdit, proxy.PutVoid()), S_OK);
            EXPECT_TRUE(IsProxy(proxy.Get()));
            EXPECT_EQ(proxy->OpenForEdit(Bstr(path).Get(), 0), S_OK);
        });
        EXPECT_EQ(edit->CommitEdit(0), S_OK) << "the edit that the other thread opened";
    });
}

TEST_F(ActivationTest, AFailingCall_KeepsItsCodeOnTheWayToAnotherApartment)
{
    InApartment(COINIT_APARTMENTTHREADED, [] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        const Bstr id(u"nobody");
        ComPtr<IUnknown> policy;
        EXPECT_EQ(file->GetPolicy(id.Get(), policy.Put()), result::NotInitialised);
        EXPECT_FALSE(policy);
    });
}

TEST_F(ActivationTest, AnAggregatedObject_SharesTheOuterObjectsIdentityAndLifetime)
{
    InApartment(COINIT_MULTITHREADED, [] {
        for (const CLSID& clsid : {CLSID_TaskInfo, CLSID_PolicyTask, CLSID_PolicyProduct, CLSID_PolicyFile}) {
            OuterObject outer;
            ASSERT_EQ(CoCreateInstance(clsid, &outer, CLSCTX_INPROC_SERVER, IID_IUnknown, outer.inner.PutVoid()), S_OK);
            ComPtr<IDispatch> dispatch;
            ASSERT_EQ(outer.QueryInterface(IID_IDispatch, dispatch.PutVoid()), S_OK);
            EXPECT_EQ(outer.references, 2u);
            ComPtr<IUnknown> identity;
            ASSERT_EQ(dispatch->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
            EXPECT_EQ(identity.Get(), static_cast<IUnknown*>(&outer));
            identity = nullptr;
            dispatch = nullptr;
            EXPECT_EQ(outer.references, 1u);
        }
    });
}

TEST_F(ActivationTest, AnAggregatedObject_MustBeAskedForItsUnknown)
{
    InApartment(COINIT_MULTITHREADED, [] {
        OuterObject outer;
        ComPtr<IPolicyFile> file;
        EXPECT_EQ(CreateIn(file, &outer), CLASS_E_NOAGGREGATION);
        EXPECT_FALSE(file);
    });
}

TEST_F(ActivationTest, EightThreads_MakeAndUseObjectsAtTheSameTime)
{
    std::atomic<int> done = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&done, i] {
            const DWORD kind = i % 2 == 0 ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED;
            ASSERT_EQ(CoInitializeEx(nullptr, kind), S_OK);
            for (int round = 0; round < 25; ++round) {
                ComPtr<IPolicyProduct> product;
                ASSERT_EQ(CreateIn(product), S_OK);
                UseProduct(*product.Get());
                LPOLESTR name = const_cast<LPOLESTR>(L"PutSectionSetting");
                DISPID id = 0;
                EXPECT_EQ(product->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id), S_OK);
                EXPECT_EQ(id, 7);
            }
            CoUninitialize();
            ++done;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(done, 8);
}

TEST_F(ActivationTest, AnObject_MayBeCalledByThreadsOfTheSameApartmentAtOnce)
{
    InApartment(COINIT_MULTITHREADED, [] {
        ComPtr<IPolicyProduct> product;
        ASSERT_EQ(CreateIn(product), S_OK);
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&product, i] {
                ASSERT_GE(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
                const Bstr section(u"Section" + std::u16string(1, static_cast<char16_t>(u'0' + i)));
                const Bstr name(u"Name");
                for (int round = 0; round < 50; ++round) {
                    EXPECT_EQ(product->PutSectionSetting(section.Get(), name.Get(), section.Get()), S_OK);
                    Bstr read;
                    EXPECT_EQ(product->GetSectionSetting(section.Get(), name.Get(), read.Slot()), S_OK);
                    EXPECT_EQ(read.Text(), section.Text());
                }
                CoUninitialize();
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    });
}

TEST(ActivationWithoutRegistrationTest, AnUnregisteredClass_IsNotFound)
{
    ASSERT_EQ(RunRegistration({L"/u"}), 0u);
    InApartment(COINIT_MULTITHREADED, [] {
        ComPtr<IPolicyFile> file;
        EXPECT_EQ(CreateIn(file), REGDB_E_CLASSNOTREG);
    });
}

}  // namespace zupm::test
