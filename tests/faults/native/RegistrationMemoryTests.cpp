// Registration, in a registry of the test's own. A value is written at a time: a failure leaves those before it.
#include <cstdlib>

#include "module/ModuleServer.h"
#include "tests/faults/FailingMemoryTest.h"

namespace zupm::test {

namespace {

void UseOwnRegistry(World& world)
{
    ::setenv("ZUREGISTRY", (world.folder.Folder() / "registry").c_str(), 1);
}

void UseOwnRegistryWithTheClasses(World& world)
{
    UseOwnRegistry(world);
    EXPECT_EQ(ModuleRegister(), S_OK);
}

HRESULT Register(World&)
{
    return ModuleRegister();
}

HRESULT Unregister(World&)
{
    return ModuleUnregister();
}

constexpr OLECHAR kClassKey[] = u"CLSID\\{A5B589D5-CFB6-4E9A-9455-39963CBF74CB}";

/// Whatever was written can be read, and the next attempt goes through.
void TheRegistryCanBeRead(World& world, const Sight&)
{
    Bstr value;
    const HRESULT read = ZuRegistryGetValue(kClassKey, nullptr, value.Slot());
    EXPECT_TRUE(read == S_OK || read == result::FileNotFound) << read;
    for (const std::string& name : world.folder.Names()) {
        EXPECT_TRUE(name == "registry" || name == "registry.lock" || name == "policy.xml") << name;
    }
}

void TheClassesAreThere(World&)
{
    Bstr value;
    EXPECT_EQ(ZuRegistryGetValue(kClassKey, nullptr, value.Slot()), S_OK);
    EXPECT_EQ(value.Text(), u"PolicyFile Class");
}

void TheClassesAreGone(World&)
{
    Bstr value;
    EXPECT_EQ(ZuRegistryGetValue(kClassKey, nullptr, value.Slot()), result::FileNotFound);
}

const std::vector<Operation> kOperations = {
    {.name = "DllRegisterServer",
     .run = Register,
     .codes = {result::OutOfMemory, result::GeneralFailure},  // the second when the module's own path is unknown
     .afterFailure = TheRegistryCanBeRead,
     .afterSuccess = TheClassesAreThere,
     .prepare = UseOwnRegistry,
     .isMember = false,
     .fewestFailures = 40,
     .stride = 127},
    {.name = "DllUnregisterServer",
     .run = Unregister,
     .codes = {result::OutOfMemory},
     .afterFailure = TheRegistryCanBeRead,
     .afterSuccess = TheClassesAreGone,
     .prepare = UseOwnRegistryWithTheClasses,
     .isMember = false,
     .fewestFailures = 20,
     .stride = 127},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Registration, FailingMemory, testing::ValuesIn(kOperations), NameOf);

}  // namespace zupm::test
