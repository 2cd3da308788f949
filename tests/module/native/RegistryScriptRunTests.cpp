// Registration scripts, run against a registry of their own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "com/Strings.h"
#include "module/RegistryScript.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {
namespace {

class ScriptRun : public testing::Test {
protected:
    ScriptRun()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "zupm-script-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        setenv("ZUREGISTRY", (m_folder / "registry").c_str(), 1);
    }
    ~ScriptRun() override
    {
        unsetenv("ZUREGISTRY");
        std::filesystem::remove_all(m_folder);
    }

    /// A value, or what says that there is none.
    [[nodiscard]] static std::u16string ValueOf(const std::u16string& key, const char16_t* name = nullptr)
    {
        Bstr value;
        const HRESULT result = ZuRegistryGetValue(key.c_str(), name, value.Put());
        return SUCCEEDED(result) ? value.Text() : u"(none)";
    }

    void MakeRegistryUnusable() { std::filesystem::create_directory(m_folder / "registry"); }

    std::filesystem::path m_folder;
};

constexpr std::string_view kScript =
    "HKCR { Toy.1 = 'Toy' { CLSID = 'id' } NoRemove CLSID { ForceRemove id = 'Toy' { Server = '%MODULE%' "
    "{ val Model = 'Free' } } } }";

TEST_F(ScriptRun, Registering_WritesEveryKeyAndValue)
{
    EXPECT_EQ(RunRegistryScript(kScript, ScriptMode::Register, u"/m\u00E9.so"), result::Success);
    EXPECT_EQ(ValueOf(u"Toy.1"), u"Toy");
    EXPECT_EQ(ValueOf(u"Toy.1\\CLSID"), u"id");
    EXPECT_EQ(ValueOf(u"CLSID\\id"), u"Toy");
    EXPECT_EQ(ValueOf(u"CLSID\\id\\Server"), u"/m\u00E9.so");
    EXPECT_EQ(ValueOf(u"CLSID\\id\\Server", u"Model"), u"Free");
}

TEST_F(ScriptRun, RegisteringAgain_RemovesWhatAForceRemoveKeyHeld)
{
    ASSERT_EQ(RunRegistryScript(kScript, ScriptMode::Register, u"/old.so"), result::Success);
    ASSERT_EQ(ZuRegistrySetValue(u"CLSID\\id\\Stale", nullptr, u"x"), S_OK);
    ASSERT_EQ(ZuRegistrySetValue(u"CLSID\\other", nullptr, u"x"), S_OK);
    EXPECT_EQ(RunRegistryScript(kScript, ScriptMode::Register, u"/new.so"), result::Success);
    EXPECT_EQ(ValueOf(u"CLSID\\id\\Server"), u"/new.so");
    EXPECT_EQ(ValueOf(u"CLSID\\id\\Stale"), u"(none)");
    EXPECT_EQ(ValueOf(u"CLSID\\other"), u"x");
}

TEST_F(ScriptRun, Unregistering_RemovesOurKeysAndKeepsTheRest)
{
    ASSERT_EQ(ZuRegistrySetValue(u"CLSID", nullptr, u"root"), S_OK);
    ASSERT_EQ(ZuRegistrySetValue(u"CLSID\\other", nullptr, u"x"), S_OK);
    ASSERT_EQ(RunRegistryScript(kScript, ScriptMode::Register, u"/m.so"), result::Success);
    EXPECT_EQ(RunRegistryScript(kScript, ScriptMode::Unregister, {}), result::Success);
    EXPECT_EQ(ValueOf(u"Toy.1"), u"(none)");
    EXPECT_EQ(ValueOf(u"Toy.1\\CLSID"), u"(none)");
    EXPECT_EQ(ValueOf(u"CLSID\\id"), u"(none)");
    EXPECT_EQ(ValueOf(u"CLSID\\id\\Server"), u"(none)");
    EXPECT_EQ(ValueOf(u"CLSID"), u"root");
    EXPECT_EQ(ValueOf(u"CLSID\\other"), u"x");
    EXPECT_EQ(RunRegistryScript(kScript, ScriptMode::Unregister, {}), result::Success);
}

TEST_F(ScriptRun, BadScript_ChangesNothing)
{
    EXPECT_EQ(RunRegistryScript("HKCR { a = 'x' b = }", ScriptMode::Register, u"/m.so"), result::GeneralFailure);
    EXPECT_EQ(RunRegistryScript("", ScriptMode::Register, u"/m.so"), result::GeneralFailure);
    EXPECT_EQ(ValueOf(u"a"), u"(none)");
}

TEST_F(ScriptRun, FailingRegistry_GivesItsCode)
{
    MakeRegistryUnusable();
    EXPECT_LT(RunRegistryScript(kScript, ScriptMode::Register, u"/m.so"), 0);
    EXPECT_LT(RunRegistryScript(kScript, ScriptMode::Unregister, {}), 0);
}

}  // namespace
}  // namespace zupm::test
