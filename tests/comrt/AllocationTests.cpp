// Every allocation of an operation fails once: the first, the second, and so on until the operation passes.
#include "tests/comrt/ClassTest.h"
#include "tests/comrt/ToyInterface.h"
#include "tests/comrt/ToyModule.h"
#include "tests/support/FailingAllocations.h"

namespace zupm::test {
namespace {

class Allocation : public ClassTest {
protected:
    /// Runs `operation` with the first, the second, ... allocation failing; `after` checks what a failure left. Returns
    /// the number of failures.
    template <class Operation, class After>
    static int FailEach(const Operation& operation, const After& after)
    {
        for (int number = 1; number < 1000; ++number) {
            HRESULT result = S_OK;
            bool happened = false;
            {
                const FailingAllocation failing(number);
                result = operation();
                happened = failing.Happened();
            }
            if (!happened) {
                EXPECT_EQ(result, S_OK);
                return number - 1;
            }
            EXPECT_EQ(result, E_OUTOFMEMORY) << number;
            after();
        }
        ADD_FAILURE() << "it never passed";
        return 0;
    }
    template <class Operation>
    static int FailEach(const Operation& operation)
    {
        return FailEach(operation, [] {});
    }
};

TEST_F(Allocation, AStringThatCannotBeAllocatedIsNull)
{
    const FailingAllocation first(1);
    EXPECT_EQ(SysAllocString(u"x"), nullptr);
    const FailingAllocation second(1);
    EXPECT_EQ(SysAllocStringLen(nullptr, 4), nullptr);
}

TEST_F(Allocation, AFailedRegistryChangeLeavesTheFileAsItWas)
{
    ASSERT_EQ(ZuRegistrySetValue(u"A\\B", u"n", u"v"), S_OK);
    const std::string before = m_folder.Read(u"registry");
    const auto unchanged = [&] {
        EXPECT_EQ(m_folder.Read(u"registry"), before);
        EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"registry", "registry.lock"}));
    };
    constexpr const OLECHAR* kLong = u"a value that is too long for a string's own space";
    EXPECT_GT(FailEach([&] { return ZuRegistrySetValue(u"A new key\\with one below it", kLong, kLong); }, unchanged),
              5);
    EXPECT_GT(FailEach([&] { return ZuRegistryDeleteTree(u"A new key"); },
                       [&] { EXPECT_NE(m_folder.Read(u"registry"), before); }),
              5);
    unchanged();
}

TEST_F(Allocation, AFailedReadGivesNoValue)
{
    ASSERT_EQ(ZuRegistrySetValue(u"A\\B", u"n", u"v"), S_OK);
    Bstr value;
    EXPECT_GT(FailEach([&] { return ZuRegistryGetValue(u"A\\B", u"n", value.Slot()); },
                       [&] { EXPECT_EQ(value.Get(), nullptr); }),
              3);
    EXPECT_EQ(value.Text(), u"v");
}

TEST_F(Allocation, AFailedCreationGivesNoObjectAndTheNextOneWorks)
{
    Register(kQuietClass, QUIET_MODULE);
    int failures = 0;
    bool happened = true;
    for (int number = 1; happened && number < 1000; ++number) {
        void* out = &out;
        HRESULT created = S_OK;
        {
            const FailingAllocation failing(number);
            created = CoCreateInstance(kQuietClass, nullptr, CLSCTX_ALL, IID_IUnknown, &out);
            happened = failing.Happened();
        }
        if (created == S_OK) {
            // Also when the module failed to free libraries: no caller fails because of that.
            static_cast<IUnknown*>(out)->Release();
        } else {
            EXPECT_EQ(created, E_OUTOFMEMORY) << number;
            EXPECT_EQ(out, nullptr) << number;
            EXPECT_TRUE(happened) << number;
            ++failures;
        }
    }
    EXPECT_FALSE(happened);
    EXPECT_GT(failures, 5);
}

TEST_F(Allocation, AFailedAnnouncementAnnouncesNothing)
{
    static constexpr ZuClassEntry kEntries[] = {{kAnnouncedClass, u"Toy.Failing.1"}};
    const ZuGetClassObject get = [](REFCLSID clsid, REFIID iid, void** out) {
        return ToyClassObject(kAnnouncedClass, clsid, iid, out);
    };
    CLSID clsid{};
    EXPECT_GT(FailEach([&] { return ZuAnnounceModule(kEntries, 1, get); },
                       [&] { EXPECT_EQ(CLSIDFromProgID(u"Toy.Failing", &clsid), CO_E_CLASSSTRING); }),
              0);
    ZuWithdrawModule(get);
}

TEST_F(Allocation, AFailedLookupOfAProgIdGivesNoClass)
{
    ASSERT_EQ(ZuRegistrySetValue(u"Toy.Quiet\\CLSID", nullptr, TextOf(kQuietClass).c_str()), S_OK);
    CLSID clsid{};
    EXPECT_GT(FailEach([&] { return CLSIDFromProgID(u"Toy.Quiet", &clsid); }, [&] { EXPECT_EQ(clsid, GUID_NULL); }), 5);
    EXPECT_EQ(clsid, kQuietClass);
}

TEST_F(Allocation, ErrorInformationKeepsItsOldTextWhenTheNewOneCannotBeKept)
{
    ICreateErrorInfo* info = nullptr;
    EXPECT_EQ(FailEach([&] { return CreateErrorInfo(&info); }, [&] { EXPECT_EQ(info, nullptr); }), 1);
    IErrorInfo* reader = nullptr;
    ASSERT_EQ(info->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&reader)), S_OK);
    OLECHAR first[] = u"the first description, longer than a string's own space";
    OLECHAR second[] = u"the second description, longer than a string's own space";
    ASSERT_EQ(info->SetDescription(first), S_OK);
    Bstr text;
    EXPECT_EQ(FailEach([&] { return info->SetDescription(second); },
                       [&] {
                           Bstr kept;
                           EXPECT_EQ(reader->GetDescription(kept.Slot()), S_OK);
                           EXPECT_EQ(kept.Text(), first);
                       }),
              1);
    EXPECT_EQ(FailEach([&] { return reader->GetDescription(text.Slot()); }), 1);
    EXPECT_EQ(text.Text(), second);
    reader->Release();
    info->Release();
}

TEST_F(Allocation, ACallWhoseNumbersCannotBecomeTextsDoesNotReachTheMember)
{
    Toy toy;
    BSTR joined = nullptr;
    VARIANT arguments[] = {Reference(VT_BSTR, &joined), Number(2), Number(1)};
    DISPPARAMS parameters{arguments, nullptr, 3, 0};
    for (int number = 1; number <= 2; ++number) {
        const FailingAllocation failing(number);
        EXPECT_EQ(toy.Invoke(kJoin, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
                  E_OUTOFMEMORY);
    }
    EXPECT_EQ(toy.calls, 0);
    EXPECT_EQ(joined, nullptr);
}

}  // namespace
}  // namespace zupm::test
