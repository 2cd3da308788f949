// The module as the system's own registration program handles it, and what the registry then holds.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "tests/windows/Registration.h"
#include "tests/windows/RegistryTree.h"

namespace zupm::test {

namespace {

/// One class: its name, the registry's description and its identifier.
struct ClassRow {
    const wchar_t* name;
    const wchar_t* clsid;
};

constexpr ClassRow kClasses[] = {
    {L"TaskInfo", L"{2D417134-0D48-4856-B6F5-04E63171E24C}"},
    {L"PolicyTask", L"{04D18721-749F-4140-AEB0-CAC099CA4741}"},
    {L"PolicyProduct", L"{1161A96C-CBA5-4CA7-BB39-BC9280348E73}"},
    {L"PolicyFile", L"{A5B589D5-CFB6-4E9A-9455-39963CBF74CB}"},
};

constexpr const wchar_t* kLibrary = L"{7DB1286A-CBEF-4823-96AA-27093A546741}";

std::wstring ProgId(const ClassRow& row)
{
    return std::wstring(L"ZuPolicyManager.").append(row.name);
}

std::wstring ClassKey(const ClassRow& row)
{
    return std::wstring(L"CLSID\\").append(row.clsid);
}

/// Everything that registration writes for one class, by key; the empty name is the default value.
std::map<std::wstring, RegistryTree> Expected(const ClassRow& row)
{
    const std::wstring description = std::wstring(row.name).append(L" Class");
    const std::wstring progId = ProgId(row);
    const std::wstring versioned = progId + L".1";
    return {
        {versioned, {{L"", {{L"", description}}}, {L"CLSID", {{L"", row.clsid}}}}},
        {progId, {{L"", {{L"", description}}}, {L"CLSID", {{L"", row.clsid}}}, {L"CurVer", {{L"", versioned}}}}},
        {ClassKey(row),
         {{L"", {{L"", description}}},
          {L"ProgID", {{L"", versioned}}},
          {L"VersionIndependentProgID", {{L"", progId}}},
          {L"Programmable", {}},
          {L"InprocServer32", {{L"", ModulePath()}, {L"ThreadingModel", L"Free"}}},
          {L"TypeLib", {{L"", kLibrary}}}}},
    };
}

void ExpectRegistered()
{
    for (const ClassRow& row : kClasses) {
        for (const auto& [key, tree] : Expected(row)) {
            EXPECT_EQ(ReadRegistryTree(key), tree) << Narrow(key);
        }
    }
}

void ExpectNotRegistered()
{
    for (const ClassRow& row : kClasses) {
        for (const auto& [key, tree] : Expected(row)) {
            EXPECT_FALSE(HasRegistryKey(key)) << Narrow(key);
        }
    }
    EXPECT_TRUE(HasRegistryKey(L"CLSID"));
}

class RegistrationTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(RunRegistration({L"/u"}), 0); }
};

}  // namespace

TEST_F(RegistrationTest, Registering_WritesTheKeysOfEveryClassAndNothingElseBelowThem)
{
    ExpectNotRegistered();
    ASSERT_EQ(RunRegistration({}), 0);
    ExpectRegistered();
}

TEST_F(RegistrationTest, RegisteringTwice_LeavesOneSetOfKeys)
{
    ASSERT_EQ(RunRegistration({}), 0);
    ASSERT_EQ(RunRegistration({}), 0);
    ExpectRegistered();
}

TEST_F(RegistrationTest, RegisteringOverStrayKeys_RemovesThoseBelowTheClassIdentifier)
{
    for (const ClassRow& row : kClasses) {
        WriteRegistryText(ClassKey(row) + L"\\Stray", L"left behind");
        WriteRegistryText(ClassKey(row) + L"\\Programmable\\Stray", L"left behind");
    }
    ASSERT_EQ(RunRegistration({}), 0);
    ExpectRegistered();
}

TEST_F(RegistrationTest, Registering_MakesTheTypeLibraryKnown)
{
    ASSERT_EQ(RunRegistration({}), 0);
    const std::wstring version = std::wstring(L"TypeLib\\").append(kLibrary).append(L"\\1.0");
    EXPECT_EQ(ReadRegistryText(version), L"zuPolicyManager 1.0 Type Library");
    EXPECT_EQ(ReadRegistryText(version + L"\\0\\win64"), ModulePath());
}

TEST_F(RegistrationTest, Registering_LetsEveryInterfaceBeMarshalledByItsTypeLibrary)
{
    ASSERT_EQ(RunRegistration({}), 0);
    for (const wchar_t* iid : {L"{8DCAD88B-D477-40BE-B978-31189549ED15}", L"{2A1631CC-F7D9-440C-AE86-3A88EAE3F5D8}",
                               L"{C7FDCCDA-FD1D-4A9A-A9B0-6B6D74A28B00}", L"{9F576BE8-B305-4494-93D8-A7A623BDFB9C}",
                               L"{BCFAFCBC-1EDB-483E-8196-C2EB685A9521}"}) {
        const std::wstring key = std::wstring(L"Interface\\").append(iid);
        EXPECT_EQ(ReadRegistryText(key + L"\\TypeLib"), kLibrary) << Narrow(iid);
        EXPECT_EQ(ReadRegistryText(key + L"\\ProxyStubClsid32"), L"{00020424-0000-0000-C000-000000000046}")
            << Narrow(iid);
    }
}

TEST_F(RegistrationTest, Unregistering_RemovesEveryClassAndKeepsTheRoot)
{
    ASSERT_EQ(RunRegistration({}), 0);
    ASSERT_EQ(RunRegistration({L"/u"}), 0);
    ExpectNotRegistered();
    EXPECT_FALSE(HasRegistryKey(std::wstring(L"TypeLib\\").append(kLibrary)));
}

TEST_F(RegistrationTest, Unregistering_KeepsForeignClasses)
{
    const std::wstring foreign = L"CLSID\\{00000000-1111-2222-3333-444444444444}";
    WriteRegistryText(foreign, L"somebody else");
    ASSERT_EQ(RunRegistration({}), 0);
    ASSERT_EQ(RunRegistration({L"/u"}), 0);
    EXPECT_EQ(ReadRegistryText(foreign), L"somebody else");
    DeleteRegistryTree(foreign);
}

TEST_F(RegistrationTest, UnregisteringWhatIsNotRegistered_Succeeds)
{
    EXPECT_EQ(RunRegistration({L"/u"}), 0);
    EXPECT_EQ(RunRegistration({L"/u"}), 0);
}

}  // namespace zupm::test
