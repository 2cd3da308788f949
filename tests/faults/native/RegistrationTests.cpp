// The registry of the component runtime, value by value, and registration, which is many of them.
#include <cstdlib>

#include "module/ModuleServer.h"
#include "tests/faults/native/FailingSystemTest.h"

namespace zupm::test {

namespace {

constexpr OLECHAR kOurs[] = u"Ours\\Key";
constexpr OLECHAR kOthers[] = u"Others\\Key";
constexpr OLECHAR kClass[] = u"CLSID\\{A5B589D5-CFB6-4E9A-9455-39963CBF74CB}";

void UseRegistry(const World& world, std::u16string_view name)
{
    ::setenv("ZUREGISTRY", NativePath(world, name).c_str(), 1);
}

void UseNewRegistry(World& world)
{
    UseRegistry(world, u"registry");
}

void UseRegistryInANewFolder(World&)
{
    const TempFolder elsewhere;  // gone when this returns
    ::setenv("ZUREGISTRY", (elsewhere.Folder() / "new" / "registry").c_str(), 1);
}

void UseRegistryWithKeys(World& world)
{
    UseNewRegistry(world);
    ASSERT_EQ(ZuRegistrySetValue(kOthers, nullptr, u"of others"), S_OK);
    ASSERT_EQ(ZuRegistrySetValue(kOurs, nullptr, u"old"), S_OK);
}

void UseRegistryWithClasses(World& world)
{
    UseNewRegistry(world);
    ASSERT_EQ(ModuleRegister(), S_OK);
}

std::u16string Value(const OLECHAR* key)
{
    Bstr value;
    return ZuRegistryGetValue(key, nullptr, value.Slot()) == S_OK ? value.Text() : u"(none)";
}

HRESULT SetValue(World&)
{
    return ZuRegistrySetValue(kOurs, nullptr, u"new");
}

HRESULT DeleteTree(World&)
{
    return ZuRegistryDeleteTree(u"Ours");
}

/// The registry has the old value or the new one. The code says which, except when the folder's flush failed.
void ExpectValue(World& world, std::u16string_view old, std::u16string_view now, const Outcome& outcome)
{
    const std::u16string value = Value(kOurs);
    EXPECT_TRUE(value == now || (outcome.code != S_OK && value == old)) << Utf8(value);
    EXPECT_TRUE(outcome.code == S_OK || value == old || outcome.failedCall == "fsync") << Utf8(value);
    ExpectCodeOfTheError(outcome);
    ExpectNoTemporary(world, outcome);
}

void IsSetInANewFile(World& world, const Sight&, const Outcome& outcome)
{
    ExpectValue(world, u"(none)", u"new", outcome);
}

void IsSetInPlaceOfTheOldValue(World& world, const Sight&, const Outcome& outcome)
{
    ExpectValue(world, u"old", u"new", outcome);
    EXPECT_EQ(Value(kOthers), u"of others");
}

void IsDeletedOrNot(World& world, const Sight&, const Outcome& outcome)
{
    ExpectValue(world, u"old", u"(none)", outcome);
    EXPECT_EQ(Value(kOthers), u"of others");
}

/// Values are written one at a time and those before a failure stay; the next attempt completes them.
void IsRegisteredOrCanBe(World& world, const Sight&, const Outcome& outcome)
{
    // The first calls find the module's own file.
    if (outcome.code != result::GeneralFailure) {
        ExpectCodeOfTheError(outcome);
    }
    ExpectNoTemporary(world, outcome);
    EXPECT_EQ(outcome.code == S_OK ? S_OK : ModuleRegister(), S_OK);
    EXPECT_EQ(Value(kClass), u"PolicyFile Class");
}

void IsUnregisteredOrCanBe(World& world, const Sight&, const Outcome& outcome)
{
    ExpectCodeOfTheError(outcome);
    ExpectNoTemporary(world, outcome);
    EXPECT_EQ(outcome.code == S_OK ? S_OK : ModuleUnregister(), S_OK);
    EXPECT_EQ(Value(kClass), u"(none)");
}

const FileOperation kOperations[] = {
    {.name = "SetValue_InANewFile", .run = SetValue, .check = IsSetInANewFile, .prepare = UseNewRegistry},
    {.name = "SetValue_InANewFolder", .run = SetValue, .check = IsSetInANewFile, .prepare = UseRegistryInANewFolder},
    {.name = "SetValue_InPlaceOfAnOldOne",
     .run = SetValue,
     .check = IsSetInPlaceOfTheOldValue,
     .prepare = UseRegistryWithKeys},
    {.name = "DeleteTree", .run = DeleteTree, .check = IsDeletedOrNot, .prepare = UseRegistryWithKeys},
    {.name = "DllRegisterServer",
     .run = [](World&) { return ModuleRegister(); },
     .check = IsRegisteredOrCanBe,
     .prepare = UseNewRegistry,
     .stride = 97,
     .errors = 1},
    {.name = "DllUnregisterServer",
     .run = [](World&) { return ModuleUnregister(); },
     .check = IsUnregisteredOrCanBe,
     .prepare = UseRegistryWithClasses,
     .stride = 23,
     .errors = 1},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Registry, FailingSystem, testing::ValuesIn(kOperations), NameOf);

}  // namespace zupm::test
