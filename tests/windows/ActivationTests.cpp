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
#include "tests/support/MemberCall.h"
#include "tests/support/Names.h"
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

/// Two policies, two tasks of one of them, a section with a setting in each.
constexpr char kListedFile[] =
    "<R><PolicyRoot><PolicyGroup><Policy PolicyVersion='7'><Product SoftwareID='B'><Section name='S'>"
    "<Setting name='x'>1</Setting></Section><Section name='E'/></Product><Product SoftwareID='A'/></Policy>"
    "</PolicyGroup></PolicyRoot><TaskRoot><TaskGroup SoftwareID='A' TaskID='2'><Task TaskVersion='7'>"
    "<Section name='S'><Setting name='x'>1</Setting></Section><Section name='E'/></Task></TaskGroup>"
    "<TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup></TaskRoot></R>";

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

TEST_F(ActivationTest, FileOnDiskAndNotices_AreMarshalledByTheTypeLibrary)
{
    const TempFolder folder;
    const Bstr path(folder.Write(u"policy.xml", "<R/>"));
    InApartment(COINIT_APARTMENTTHREADED, [&] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        ASSERT_EQ(file->InitializeFile(path.Get(), 0), S_OK);
        const ComPtr<IPolicyFileContents> contents = file.Query<IPolicyFileContents>();
        ComPtr<IPolicyNotices> notices;
        ASSERT_EQ(contents->get_Notices(notices.Put()), S_OK);
        EXPECT_TRUE(IsProxy(notices.Get()));
        LONG number = 0;
        EXPECT_EQ(notices->get_Count(&number), S_OK);
        EXPECT_EQ(number, 1);
        EXPECT_EQ(notices->get_Line(0, &number), S_OK);
        EXPECT_EQ(number, 1);
        EXPECT_EQ(notices->get_Line(1, &number), result::BadArgument);
        EXPECT_EQ(MemberCall(notices.Get(), u"Text").In(LONG{0}).Get().text,
                  u"the file has neither a PolicyRoot nor a TaskRoot element; it may not be a policy file");
        EXPECT_EQ(contents->WriteIfUnchanged(0), S_OK);
        EXPECT_EQ(contents->get_HasChangedOnDisk(&number), S_OK);
        EXPECT_EQ(number, 0);
        static_cast<void>(folder.Write(u"policy.xml", "<Other/>"));
        EXPECT_EQ(contents->get_HasChangedOnDisk(&number), S_OK);
        EXPECT_EQ(number, 1);
        EXPECT_EQ(contents->WriteIfUnchanged(0), result::FileChanged);
    });
}

TEST_F(ActivationTest, ListingInterfaces_AreMarshalledByTheTypeLibrary)
{
    const TempFolder folder;
    const Bstr path(folder.Write(u"policy.xml", kListedFile));
    InApartment(COINIT_APARTMENTTHREADED, [&] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        const ComPtr<IPolicyFileContents> contents = file.Query<IPolicyFileContents>();
        ASSERT_TRUE(contents);
        EXPECT_TRUE(IsProxy(contents.Get()));
        EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return contents->get_PolicyIDs(slot); }).code,
                  result::NotInitialised);
        ASSERT_EQ(file->InitializeFile(path.Get(), 1), S_OK);
        ComPtr<IPolicyNames> policies;
        ASSERT_EQ(contents->get_PolicyIDs(policies.Put()), S_OK);
        EXPECT_TRUE(IsProxy(policies.Get()));
        EXPECT_EQ(ReadNames(*policies), (Names{u"B", u"A"}));
        const ComPtr<IEnumVARIANT> enumerator = EnumeratorOf(*policies);
        EXPECT_TRUE(IsProxy(enumerator.Get()));
        VARIANT values[3]{};
        ULONG fetched = 77;
        EXPECT_EQ(enumerator->Next(3, values, &fetched), S_FALSE);
        ASSERT_EQ(fetched, 2u);
        EXPECT_EQ(Text(values[0].bstrVal) + Text(values[1].bstrVal), u"BA");
        VariantClear(&values[0]);
        VariantClear(&values[1]);
        ComPtr<IEnumVARIANT> copy;
        EXPECT_EQ(enumerator->Reset(), S_OK);
        EXPECT_EQ(enumerator->Skip(1), S_OK);
        ASSERT_EQ(enumerator->Clone(copy.Put()), S_OK);
        EXPECT_EQ(ReadRest(*copy), (Names{u"A"}));
        EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return contents->get_TaskSoftwareIDs(slot); }), AllOf({u"A"}));
        EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return contents->GetTaskIDs(Bstr(u"A").Get(), slot); }),
                  AllOf({u"2", u"1"}));
        OutText name;
        EXPECT_EQ(policies->get_Item(2, name.Slot()), result::BadArgument);
    });
}

TEST_F(ActivationTest, SectionsOfAProductAndATask_AreMarshalledByTheTypeLibrary)
{
    const TempFolder folder;
    const Bstr path(folder.Write(u"policy.xml", kListedFile));
    InApartment(COINIT_APARTMENTTHREADED, [&] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        ASSERT_EQ(file->InitializeFile(path.Get(), 1), S_OK);
        ComPtr<IUnknown> product;
        ComPtr<IUnknown> task;
        ASSERT_EQ(file->GetPolicy(Bstr(u"B").Get(), product.Put()), S_OK);
        ASSERT_EQ(file->GetTask(Bstr(u"A").Get(), Bstr(u"2").Get(), task.Put()), S_OK);
        for (const ComPtr<IUnknown>& object : {product, task}) {
            const ComPtr<IPolicySections> sections = object.Query<IPolicySections>();
            ASSERT_TRUE(sections);
            EXPECT_TRUE(IsProxy(sections.Get()));
            const Bstr section(u"S");
            const Bstr setting(u"x");
            EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return sections->get_SectionNames(slot); }),
                      AllOf({u"S", u"E"}));
            EXPECT_EQ(ListOf([&](IPolicyNames** slot) { return sections->GetSettingNames(section.Get(), slot); }),
                      AllOf({u"x"}));
            Bstr value;
            EXPECT_EQ(sections->GetStoredSetting(section.Get(), setting.Get(), value.Slot()), S_OK);
            EXPECT_EQ(value.Text(), u"1");
            Bstr version;
            EXPECT_EQ(sections->get_TakenVersion(version.Slot()), S_OK);
            EXPECT_EQ(version.Text(), u"7");
            ComPtr<IPolicyNames> none;
            EXPECT_EQ(sections->GetSettingNames(setting.Get(), none.Put()), result::SectionNotFound);
            EXPECT_FALSE(none);
        }
    });
}

TEST_F(ActivationTest, MembersOfOtherInterfaces_AreCalledByNameThroughAProxy)
{
    const TempFolder folder;
    const std::u16string path = folder.Write(u"policy.xml", kListedFile);
    InApartment(COINIT_APARTMENTTHREADED, [&] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        ASSERT_TRUE(IsProxy(file.Get()));
        EXPECT_EQ(MemberCall(file.Get(), u"PolicyIDs").Get().code, result::NotInitialised);
        EXPECT_EQ(MemberCall(file.Get(), u"OpenForEdit").In(path).In(LONG{0}).Call().code, S_OK);
        EXPECT_EQ(MemberCall(file.Get(), u"HasFileChanged").ForResult().number, 0);
        const auto names = MemberCall(file.Get(), u"PolicyIDs").Get().object.Query<IPolicyNames>();
        ASSERT_TRUE(names);
        EXPECT_EQ(ReadNames(*names), (Names{u"B", u"A"}));
        EXPECT_EQ(MemberCall(file.Get(), u"EndEdit").Call().code, S_OK);
    });
}

TEST_F(ActivationTest, TypeInformationOfAnObject_IsThatOfItsDualInterface)
{
    InApartment(COINIT_MULTITHREADED, [] {
        ComPtr<IPolicyFile> file;
        ASSERT_EQ(CreateIn(file), S_OK);
        UINT count = 0;
        EXPECT_EQ(file->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 1u);
        ComPtr<ITypeInfo> info;
        ASSERT_EQ(file->GetTypeInfo(0, LOCALE_NEUTRAL, info.Put()), S_OK);
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
        EXPECT_TRUE(attributes->guid == IID_IPolicyFile);
        info->ReleaseTypeAttr(attributes);
        for (const wchar_t* other : {L"PolicyIDs", L"OpenForEdit"}) {
            LPOLESTR name = const_cast<LPOLESTR>(other);
            DISPID id = 0;
            EXPECT_EQ(info->GetIDsOfNames(&name, 1, &id), DISP_E_UNKNOWNNAME) << Narrow(other);
        }
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
