#include <gtest/gtest.h>

#include "tests/comrt/ToyInterface.h"

namespace zupm::test {
namespace {

/// The dispatch numbers of a member and parameter names.
HRESULT Ids(std::vector<std::u16string> names, std::vector<DISPID>& ids)
{
    std::vector<LPOLESTR> pointers;
    for (std::u16string& name : names) {
        pointers.push_back(name.data());
    }
    ids.assign(names.size(), 1234);
    return DispatchGetIDsOfNames(ToyInterface(), pointers.data(), static_cast<UINT>(pointers.size()), 0, ids.data());
}

TEST(DispatchNames, EveryMemberIsFoundInAnyAsciiCase)
{
    std::vector<DISPID> ids;
    for (const Member& member : ToyInterface().members) {
        std::u16string name(member.name);
        EXPECT_EQ(Ids({name}, ids), S_OK);
        EXPECT_EQ(ids[0], member.id);
        for (char16_t& unit : name) {
            unit = unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
        }
        EXPECT_EQ(Ids({name}, ids), S_OK);
        EXPECT_EQ(ids[0], member.id);
    }
}

TEST(DispatchNames, AnUnknownNameGivesNoNumber)
{
    std::vector<DISPID> ids;
    for (const char16_t* name : {u"", u"Joi", u"Join2", u" Join", u"J\u014Din"}) {
        EXPECT_EQ(Ids({name}, ids), DISP_E_UNKNOWNNAME);
        EXPECT_EQ(ids[0], DISPID_UNKNOWN);
    }
}

TEST(DispatchNames, ParameterNamesGiveTheirPlaces)
{
    std::vector<DISPID> ids;
    EXPECT_EQ(Ids({u"Join", u"RIGHT", u"left"}, ids), S_OK);
    EXPECT_EQ(ids, (std::vector<DISPID>{kJoin, 1, 0}));
    EXPECT_EQ(Ids({u"Count", u"newValue"}, ids), S_OK);
    EXPECT_EQ(ids, (std::vector<DISPID>{kCount, 0}));
}

TEST(DispatchNames, AnUnknownParameterSpoilsOnlyItself)
{
    std::vector<DISPID> ids;
    EXPECT_EQ(Ids({u"Join", u"middle", u"right"}, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids, (std::vector<DISPID>{kJoin, DISPID_UNKNOWN, 1}));
    EXPECT_EQ(Ids({u"Missing", u"left"}, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids, (std::vector<DISPID>{DISPID_UNKNOWN, DISPID_UNKNOWN}));
}

TEST(DispatchNames, WithoutNamesOrPlacesForNumbersThereIsNothingToDo)
{
    LPOLESTR none = nullptr;
    DISPID id = 0;
    EXPECT_EQ(DispatchGetIDsOfNames(ToyInterface(), nullptr, 1, 0, &id), E_INVALIDARG);
    EXPECT_EQ(DispatchGetIDsOfNames(ToyInterface(), &none, 1, 0, nullptr), E_INVALIDARG);
    EXPECT_EQ(DispatchGetIDsOfNames(ToyInterface(), &none, 0, 0, &id), E_INVALIDARG);
    EXPECT_EQ(DispatchGetIDsOfNames(ToyInterface(), &none, 1, 0, &id), DISP_E_UNKNOWNNAME);
}

TEST(DispatchNames, ThereAreNoTypeDescriptions)
{
    UINT count = 99;
    EXPECT_EQ(DispatchGetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(DispatchGetTypeInfoCount(nullptr), E_POINTER);
    auto* info = reinterpret_cast<ITypeInfo*>(std::uintptr_t{0x10});
    EXPECT_EQ(DispatchGetTypeInfo(ToyInterface(), 0, 0, &info), DISP_E_BADINDEX);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(DispatchGetTypeInfo(ToyInterface(), 0, 0, nullptr), E_POINTER);
    ReleaseTypeInformation();
}

}  // namespace
}  // namespace zupm::test
