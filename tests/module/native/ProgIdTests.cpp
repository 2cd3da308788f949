// Classes by their names.
#include <gtest/gtest.h>

#include "tests/module/Classes.h"
#include "tests/support/Bstr.h"

namespace zupm::test {

namespace {

struct NameRow {
    const char16_t* name;
    const CLSID& clsid;
};

constexpr NameRow kNames[] = {
    {u"ZuPolicyManager.TaskInfo.1", CLSID_TaskInfo},           {u"ZuPolicyManager.TaskInfo", CLSID_TaskInfo},
    {u"ZuPolicyManager.PolicyTask.1", CLSID_PolicyTask},       {u"ZuPolicyManager.PolicyTask", CLSID_PolicyTask},
    {u"ZuPolicyManager.PolicyProduct.1", CLSID_PolicyProduct}, {u"ZuPolicyManager.PolicyProduct", CLSID_PolicyProduct},
    {u"ZuPolicyManager.PolicyFile.1", CLSID_PolicyFile},       {u"ZuPolicyManager.PolicyFile", CLSID_PolicyFile},
    {u"zupolicymanager.POLICYFILE", CLSID_PolicyFile},
};

}  // namespace

TEST(ProgIds, NameTheirClassesWithAndWithoutVersion)
{
    for (const NameRow& row : kNames) {
        const Bstr name(row.name);
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID(name.Get(), &clsid), S_OK) << Utf8(row.name);
        EXPECT_TRUE(clsid == row.clsid) << Utf8(row.name);
        ComPtr<IUnknown> object;
        EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.PutVoid()), S_OK);
    }
}

TEST(ProgIds, OfOtherVersionsAndClassesAreUnknown)
{
    for (const char16_t* text : {u"ZuPolicyManager.PolicyFile.2", u"ZuPolicyManager.Policy", u"ZuPolicyManager", u"",
                                 u"ZuPolicyManager.PolicyFile.1.1", u"ZuPolicyManager.PolicyFile.1\\CLSID"}) {
        const Bstr name(text);
        CLSID clsid = CLSID_PolicyFile;
        EXPECT_EQ(CLSIDFromProgID(name.Get(), &clsid), CO_E_CLASSSTRING) << Utf8(text);
        EXPECT_TRUE(clsid == GUID_NULL) << Utf8(text);
    }
}

TEST(ProgIds, OfThePublicHeaderAreTheVersionedOnes)
{
    const char16_t* names[] = {u"ZuPolicyManager.TaskInfo.1", u"ZuPolicyManager.PolicyTask.1",
                               u"ZuPolicyManager.PolicyProduct.1", u"ZuPolicyManager.PolicyFile.1"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        const std::basic_string_view<OLECHAR> given(kClasses[i].progId);
        EXPECT_EQ(std::u16string(given.begin(), given.end()), names[i]);
    }
}

}  // namespace zupm::test
