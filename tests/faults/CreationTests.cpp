// Class objects and objects: how they are made, plain and as part of an outer object.
#include "module/ModuleServer.h"
#include "tests/faults/FailingMemoryTest.h"
#include "tests/module/Classes.h"
#include "tests/support/OuterObject.h"

namespace zupm::test {

namespace {

OuterObject g_outer;

void** SlotOf(World& world)
{
    return reinterpret_cast<void**>(world.object.Slot());
}

template <std::size_t row>
HRESULT GetClassObject(World& world)
{
    return ModuleGetClassObject(kClasses[row].clsid, IID_IUnknown, SlotOf(world));
}

template <std::size_t row>
HRESULT Create(World& world)
{
    return CoCreateInstance(kClasses[row].clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, SlotOf(world));
}

template <std::size_t row>
HRESULT CreateAsPart(World& world)
{
    return CoCreateInstance(kClasses[row].clsid, &g_outer, CLSCTX_INPROC_SERVER, IID_IUnknown, SlotOf(world));
}

void NoObjectIsOut(World& world, const Sight& before)
{
    EXPECT_TRUE(world.object.IsNull());
    EXPECT_EQ(world.OfAll(), before);
}

void TheObjectIsThere(World& world)
{
    EXPECT_TRUE(world.object.Take());
}

/// An object that goes takes the resource module with it, so that the creation has to load it.
void DropTheResourceModule(World&)
{
    ComPtr<ITaskInfo> any;
    ASSERT_EQ(TryCreate(any), S_OK);
}

template <std::size_t row>
std::vector<Operation> OperationsOf(std::vector<HRESULT> codes)
{
    return {
        {.name = "ClassObject",
         .run = GetClassObject<row>,
         .codes = {result::OutOfMemory},
         .afterFailure = NoObjectIsOut,
         .afterSuccess = TheObjectIsThere,
         .isMember = false},
        {.name = "Plain",
         .run = Create<row>,
         .codes = codes,
         .afterFailure = NoObjectIsOut,
         .afterSuccess = TheObjectIsThere,
         .prepare = DropTheResourceModule,
         .isMember = false,
         .fewestFailures = 5},
        {.name = "Aggregated",
         .run = CreateAsPart<row>,
         .codes = codes,
         .afterFailure = NoObjectIsOut,
         .afterSuccess = TheObjectIsThere,
         .prepare = DropTheResourceModule,
         .isMember = false,
         .fewestFailures = 5},
    };
}

const std::vector<HRESULT> kMemory = {result::OutOfMemory};
/// These start from a product or task of their own.
const std::vector<HRESULT> kMemoryAndData = {result::OutOfMemory, result::Unexpected, result::AllocationFailed};

}  // namespace

INSTANTIATE_TEST_SUITE_P(TaskInfoCreation, FailingMemory, testing::ValuesIn(OperationsOf<0>(kMemory)), NameOf);
INSTANTIATE_TEST_SUITE_P(PolicyTaskCreation, FailingMemory, testing::ValuesIn(OperationsOf<1>(kMemoryAndData)), NameOf);
INSTANTIATE_TEST_SUITE_P(PolicyProductCreation, FailingMemory, testing::ValuesIn(OperationsOf<2>(kMemoryAndData)),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(PolicyFileCreation, FailingMemory, testing::ValuesIn(OperationsOf<3>(kMemory)), NameOf);

}  // namespace zupm::test
