// A list of names and its enumerator, in every form of calling.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "module/ModuleServer.h"
#include "tests/support/ErrorInfo.h"
#include "tests/support/MemberCall.h"
#include "tests/support/Names.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::test {

namespace {

constexpr LCID kLocale = 0x0409;

/// The sections of a product that has one of each of these names.
ComPtr<IPolicyNames> ListOfNames(const Names& names)
{
    ProductClient product(Create<IPolicyProduct>());
    for (const std::u16string& name : names) {
        EXPECT_EQ(product.Put(name, u"x", u"1"), 0);
    }
    OutObject<IPolicyNames> slot;
    EXPECT_EQ(ComPtr<IPolicyProduct>(product.Object()).Query<IPolicySections>()->get_SectionNames(slot.Slot()), 0);
    return slot.Take();
}

/// Values that hold something before the call; what a call put there is freed.
class Values {
public:
    explicit Values(std::size_t count) : m_values(count)
    {
        for (VARIANT& value : m_values) {
            value.vt = VT_I4;
            value.lVal = kPoisonNumber;
        }
    }
    ~Values()
    {
        for (VARIANT& value : m_values) {
            static_cast<void>(VariantClear(&value));
        }
    }
    Values(const Values&) = delete;
    Values& operator=(const Values&) = delete;

    [[nodiscard]] VARIANT* Data() { return m_values.data(); }
    /// The strings among them; "-" for one that holds what it held.
    [[nodiscard]] Names Texts() const
    {
        Names texts;
        for (const VARIANT& value : m_values) {
            texts.push_back(value.vt == VT_BSTR ? Text(value.bstrVal) : u"-");
        }
        return texts;
    }

private:
    std::vector<VARIANT> m_values;
};

HRESULT CallItem(IPolicyNames& names, LONG place)
{
    OutText slot;
    const HRESULT code = names.get_Item(place, slot.Slot());
    EXPECT_TRUE(code == 0 || slot.Untouched());
    return code;
}

}  // namespace

TEST(NameList, GivesItsNamesByPlace)
{
    const auto names = ListOfNames({u"one", u"", u"three \U0001F600"});
    OutNumber count;
    EXPECT_EQ(names->get_Count(count.Slot()), 0);
    EXPECT_EQ(count.Value(), 3);
    OutText slot;
    EXPECT_EQ(names->get_Item(2, slot.Slot()), 0);
    EXPECT_EQ(slot.Text(), u"three \U0001F600");
    EXPECT_EQ(names->get_Item(1, slot.Slot()), 0);
    EXPECT_FALSE(slot.IsNull()) << "an empty name is an empty string";
    EXPECT_EQ(slot.Text(), u"");
    EXPECT_EQ(names->get_Item(0, slot.Slot()), 0);
    EXPECT_EQ(slot.Text(), u"one");
}

TEST(NameList, RefusesPlacesThatItDoesNotHave)
{
    const auto names = ListOfNames({u"one", u"two"});
    for (const LONG place : {LONG{2}, LONG{-1}, LONG{0x7FFFFFFF}, -LONG{0x7FFFFFFF} - 1}) {
        EXPECT_EQ(CallItem(*names, place), result::BadArgument) << place;
        EXPECT_EQ(TakeErrorInformation().description, result::SentenceFor(result::BadArgument));
    }
    EXPECT_EQ(CallItem(*ListOfNames({}), 0), result::BadArgument);
}

TEST(NameList, RefusesNullSlots)
{
    const auto names = ListOfNames({u"one"});
    EXPECT_EQ(names->get_Item(0, nullptr), result::BadArgument);
    EXPECT_EQ(names->get_Count(nullptr), result::BadArgument);
    EXPECT_EQ(names->get__NewEnum(nullptr), result::BadArgument);
    const ErrorInformation information = TakeErrorInformation();
    EXPECT_EQ(information.source, u"ZuPolicyManager.PolicyNames");
    EXPECT_TRUE(information.interfaceId == IID_IPolicyNames);
}

TEST(NameList, OfNothingIsEmpty)
{
    const auto names = ListOfNames({});
    OutNumber count;
    EXPECT_EQ(names->get_Count(count.Slot()), 0);
    EXPECT_EQ(count.Value(), 0);
    VARIANT value{};
    EXPECT_EQ(EnumeratorOf(*names)->Next(1, &value, nullptr), S_FALSE);
    EXPECT_EQ(value.vt, VT_EMPTY);
}

TEST(NameList, OffersItsInterfaceAndNoOther)
{
    const auto names = ListOfNames({u"one"});
    const ComPtr<IUnknown> identity = names.Query<IUnknown>();
    EXPECT_EQ(names.Query<IDispatch>().Query<IUnknown>().Get(), identity.Get());
    const auto support = names.Query<ISupportErrorInfo>();
    ASSERT_TRUE(support);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IPolicyNames), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IPolicySections), S_FALSE);
    EXPECT_FALSE(names.Query<IPolicySections>());
    EXPECT_FALSE(names.Query<IEnumVARIANT>());
}

TEST(NameList, IsReadByName)
{
    const auto names = ListOfNames({u"one", u"two"});
    EXPECT_EQ(MemberCall(names.Get(), u"Count").Get().number, 2);
    const CallOutcome item = MemberCall(names.Get(), u"Item").In(LONG{1}).Get();
    EXPECT_EQ(item.code, 0);
    EXPECT_EQ(item.text, u"two");
    const CallOutcome failed = MemberCall(names.Get(), u"Item").In(LONG{2}).Get();
    EXPECT_EQ(failed.invoked, DISP_E_EXCEPTION);
    EXPECT_EQ(failed.code, result::BadArgument);
    EXPECT_EQ(failed.description, result::SentenceFor(result::BadArgument));
    EXPECT_EQ(MemberCall(names.Get(), u"Item").Get().code, DISP_E_BADPARAMCOUNT);
}

TEST(NameList, HasItsNumbers)
{
    const auto names = ListOfNames({});
    EXPECT_EQ(MemberCall::IdOf(names.Get(), u"item"), DISPID_VALUE);
    EXPECT_EQ(MemberCall::IdOf(names.Get(), u"COUNT"), 1);
    for (const char16_t* other : {u"Add", u"SectionNames", u"NewEnum"}) {
        EXPECT_EQ(MemberCall::IdOf(names.Get(), other), DISPID_UNKNOWN);
    }
}

TEST(NameList, GivesItsEnumeratorByNumberAsScriptEnginesAsk)
{
    const auto names = ListOfNames({u"one", u"two"});
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    for (const WORD kinds :
         std::initializer_list<WORD>{DISPATCH_PROPERTYGET, DISPATCH_METHOD, DISPATCH_METHOD | DISPATCH_PROPERTYGET}) {
        VARIANT value{};
        ASSERT_EQ(names->Invoke(DISPID_NEWENUM, IID_NULL, kLocale, kinds, &none, &value, nullptr, nullptr), S_OK);
        ASSERT_EQ(value.vt, VT_UNKNOWN);
        const auto enumerator = ComPtr<IUnknown>::Attach(value.punkVal).Query<IEnumVARIANT>();
        ASSERT_TRUE(enumerator);
        EXPECT_EQ(ReadRest(*enumerator), (Names{u"one", u"two"}));
    }
    EXPECT_EQ(names->Invoke(DISPID_NEWENUM, IID_NULL, kLocale, DISPATCH_PROPERTYPUT, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(names->Invoke(1, IID_NULL, kLocale, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND)
        << "any other property is none";
}

TEST(NameEnumerator, HandsOutAsManyAsAreAskedFor)
{
    const auto all = EnumeratorOf(*ListOfNames({u"a", u"b", u"c", u"d"}));
    Values three(3);
    ULONG fetched = 77;
    EXPECT_EQ(all->Next(3, three.Data(), &fetched), S_OK);
    EXPECT_EQ(fetched, 3U);
    EXPECT_EQ(three.Texts(), (Names{u"a", u"b", u"c"}));
    Values more(2);
    EXPECT_EQ(all->Next(2, more.Data(), &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1U);
    EXPECT_EQ(more.Texts(), (Names{u"d", u"-"}));
    EXPECT_EQ(all->Next(2, more.Data() + 1, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0U);
    EXPECT_EQ(more.Texts(), (Names{u"d", u"-"}));
}

TEST(NameEnumerator, NeedsNoCountForOne)
{
    const auto all = EnumeratorOf(*ListOfNames({u"a", u"b"}));
    Values one(1);
    EXPECT_EQ(all->Next(1, one.Data(), nullptr), S_OK);
    EXPECT_EQ(one.Texts(), (Names{u"a"}));
    Values two(2);
    EXPECT_EQ(all->Next(2, two.Data(), nullptr), E_INVALIDARG);
    EXPECT_EQ(two.Texts(), (Names{u"-", u"-"}));
    ULONG fetched = 77;
    EXPECT_EQ(all->Next(1, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(fetched, 0U);
    EXPECT_EQ(all->Next(0, two.Data(), &fetched), S_OK);
    EXPECT_EQ(fetched, 0U);
    EXPECT_EQ(ReadRest(*all), (Names{u"b"})) << "calls that fail do not move it";
}

TEST(NameEnumerator, SkipsAndStartsOver)
{
    const auto all = EnumeratorOf(*ListOfNames({u"a", u"b", u"c"}));
    EXPECT_EQ(all->Skip(2), S_OK);
    EXPECT_EQ(ReadRest(*all), (Names{u"c"}));
    EXPECT_EQ(all->Skip(0), S_OK);
    EXPECT_EQ(all->Skip(1), S_FALSE);
    EXPECT_EQ(all->Reset(), S_OK);
    EXPECT_EQ(all->Skip(4), S_FALSE) << "it is at the end then";
    EXPECT_EQ(ReadRest(*all), Names());
    EXPECT_EQ(all->Reset(), S_OK);
    EXPECT_EQ(all->Skip(0xFFFFFFFFu), S_FALSE);
    EXPECT_EQ(ReadRest(*all), Names());
    EXPECT_EQ(all->Reset(), S_OK);
    EXPECT_EQ(ReadRest(*all), (Names{u"a", u"b", u"c"}));
}

TEST(NameEnumerator, IsCopiedWithItsPlace)
{
    const auto all = EnumeratorOf(*ListOfNames({u"a", u"b", u"c"}));
    ASSERT_EQ(all->Skip(1), S_OK);
    ComPtr<IEnumVARIANT> copy;
    ASSERT_EQ(all->Clone(copy.Put()), S_OK);
    EXPECT_EQ(ReadRest(*all), (Names{u"b", u"c"}));
    EXPECT_EQ(ReadRest(*copy), (Names{u"b", u"c"}));
    EXPECT_EQ(copy->Reset(), S_OK);
    EXPECT_EQ(ReadRest(*copy), (Names{u"a", u"b", u"c"}));
    EXPECT_EQ(all->Clone(nullptr), E_POINTER);
}

TEST(NameEnumerator, OutlivesItsList)
{
    ComPtr<IEnumVARIANT> all;
    {
        const auto names = ListOfNames({u"a", u"b"});
        all = EnumeratorOf(*names);
        EXPECT_NE(all.Get(), EnumeratorOf(*names).Get()) << "every call gives one of its own";
    }
    EXPECT_EQ(ReadRest(*all), (Names{u"a", u"b"}));
}

TEST(NameEnumerator, OffersItsInterfaceAndNoOther)
{
    const auto all = EnumeratorOf(*ListOfNames({u"a"}));
    EXPECT_EQ(all.Query<IUnknown>().Get(), static_cast<IUnknown*>(all.Get()));
    void* slot = &slot;
    EXPECT_EQ(all->QueryInterface(IID_IDispatch, &slot), E_NOINTERFACE);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(all->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(NameEnumerator, KeepsTheModuleLoadedAsItsListDoes)
{
    ASSERT_EQ(ModuleCanUnloadNow(), S_OK);
    auto names = ListOfNames({u"a"});
    EXPECT_EQ(ModuleCanUnloadNow(), S_FALSE);
    auto all = EnumeratorOf(*names);
    names.Reset();
    EXPECT_EQ(ModuleCanUnloadNow(), S_FALSE);
    all.Reset();
    EXPECT_EQ(ModuleCanUnloadNow(), S_OK);
}

TEST(NameEnumerator, GivesEachNameToOneOfTheThreadsThatShareIt)
{
    Names expected;
    for (int i = 0; i < 2000; ++i) {
        expected.push_back(u"name" + Utf16(std::to_string(10000 + i)));
    }
    const auto all = EnumeratorOf(*ListOfNames(expected));
    std::vector<Names> found(4);
    std::vector<std::thread> threads;
    for (Names& mine : found) {
        threads.emplace_back([&] { mine = ReadRest(*all); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    Names together;
    for (const Names& mine : found) {
        EXPECT_TRUE(std::ranges::is_sorted(mine));
        together.insert(together.end(), mine.begin(), mine.end());
    }
    std::ranges::sort(together);
    EXPECT_TRUE(together == expected);
}

}  // namespace zupm::test
