// Registration of the real module in a registry of its own.
#include <gtest/gtest.h>

#include "tests/module/native/ModuleFile.h"
#include "tests/support/ComPtr.h"
#include "tests/support/Difference.h"

namespace zupm::test {

namespace {

struct KeyRow {
    const char16_t* name;
    const char16_t* clsid;
};

constexpr KeyRow kKeys[] = {
    {u"TaskInfo", u"{2D417134-0D48-4856-B6F5-04E63171E24C}"},
    {u"PolicyTask", u"{04D18721-749F-4140-AEB0-CAC099CA4741}"},
    {u"PolicyProduct", u"{1161A96C-CBA5-4CA7-BB39-BC9280348E73}"},
    {u"PolicyFile", u"{A5B589D5-CFB6-4E9A-9455-39963CBF74CB}"},
};

class Registration : public testing::Test {
protected:
    void Register() const { ASSERT_EQ(m_module.Call("DllRegisterServer"), S_OK); }
    void Unregister() const { ASSERT_EQ(m_module.Call("DllUnregisterServer"), S_OK); }

    OwnRegistry m_registry;
    ModuleFile m_module;
};

}  // namespace

TEST_F(Registration, WritesEveryValueOfEachClass)
{
    Register();
    for (const KeyRow& row : kKeys) {
        const std::u16string name(row.name);
        const std::u16string progId = u"ZuPolicyManager." + name;
        const std::u16string key = std::u16string(u"CLSID\\") + row.clsid;
        const std::string description = Utf8(name + u" Class");
        EXPECT_EQ(OwnRegistry::Value(progId + u".1"), description);
        EXPECT_EQ(OwnRegistry::Value(progId + u".1\\CLSID"), Utf8(row.clsid));
        EXPECT_EQ(OwnRegistry::Value(progId), description);
        EXPECT_EQ(OwnRegistry::Value(progId + u"\\CLSID"), Utf8(row.clsid));
        EXPECT_EQ(OwnRegistry::Value(progId + u"\\CurVer"), Utf8(progId + u".1"));
        EXPECT_EQ(OwnRegistry::Value(key), description);
        EXPECT_EQ(OwnRegistry::Value(key + u"\\ProgID"), Utf8(progId + u".1"));
        EXPECT_EQ(OwnRegistry::Value(key + u"\\VersionIndependentProgID"), Utf8(progId));
        EXPECT_EQ(OwnRegistry::Value(key + u"\\InprocServer32"), ModulePath().string());
        EXPECT_EQ(OwnRegistry::Value(key + u"\\InprocServer32", u"ThreadingModel"), "Free");
        EXPECT_EQ(OwnRegistry::Value(key + u"\\TypeLib"), "{7DB1286A-CBEF-4823-96AA-27093A546741}");
        EXPECT_NE(m_registry.Text().find("[" + Utf8(key) + "\\Programmable]\n"), std::string::npos);
    }
}

TEST_F(Registration, Twice_LeavesOneSetOfKeys)
{
    Register();
    const std::string once = m_registry.Text();
    ASSERT_NE(once, "");
    Register();
    EXPECT_EQ(Difference(once, m_registry.Text()), "");
}

TEST_F(Registration, Again_RemovesWhatAnOlderOneLeftUnderTheClassIdentifier)
{
    Register();
    const std::string once = m_registry.Text();
    const Bstr key(std::u16string(u"CLSID\\") + kKeys[3].clsid + u"\\Old");
    const Bstr value(u"x");
    ASSERT_EQ(ZuRegistrySetValue(key.Get(), nullptr, value.Get()), S_OK);
    Register();
    EXPECT_EQ(Difference(once, m_registry.Text()), "");
}

TEST_F(Registration, TakenBack_RemovesTheClassesAndKeepsTheClsidRootAndTheRest)
{
    const Bstr other(u"CLSID\\{00000000-0000-0000-0000-000000000001}");
    const Bstr value(u"another's");
    ASSERT_EQ(ZuRegistrySetValue(other.Get(), nullptr, value.Get()), S_OK);
    const std::string before = m_registry.Text();
    Register();
    ASSERT_NE(m_registry.Text(), before);
    Unregister();
    EXPECT_EQ(Difference(before, m_registry.Text()), "");
}

TEST_F(Registration, TakenBackInARegistryOfItsOwn_KeepsTheEmptyClsidRoot)
{
    Register();
    Unregister();
    EXPECT_EQ(m_registry.Text(), "[CLSID]\n");
}

TEST_F(Registration, TakenBackTwiceOrWithoutOne_IsNoFailure)
{
    Unregister();
    Register();
    Unregister();
    Unregister();
    EXPECT_EQ(OwnRegistry::Value(u"ZuPolicyManager.PolicyFile"), "(none)");
}

TEST_F(Registration, InARegistryThatCannotBeWritten_Fails)
{
    ::setenv("ZUREGISTRY", "/proc/no-such-folder/registry", 1);
    EXPECT_LT(m_module.Call("DllRegisterServer"), 0);
}

}  // namespace zupm::test
