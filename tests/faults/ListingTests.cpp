// Lists of what a file, a product and a task have; values as they are stored; lists and enumerators.
#include "tests/faults/FailingMemoryTest.h"
#include "tests/support/Names.h"

namespace zupm::test {

namespace {

const Names kProducts{kProduct, kOtherProduct};

ComPtr<IPolicyFileContents> ContentsOf(World& world)
{
    return ComPtr<IPolicyFile>(world.file.Object()).Query<IPolicyFileContents>();
}

/// The sections of one of the world's objects: &World::product or &World::task.
template <auto object>
ComPtr<IPolicySections> SectionsOf(World& world)
{
    return ComPtr<IUnknown>((world.*object).Object()).Query<IPolicySections>();
}

HRESULT ListPolicies(World& world)
{
    return ContentsOf(world)->get_PolicyIDs(world.names.Slot());
}

HRESULT ListSoftware(World& world)
{
    return ContentsOf(world)->get_TaskSoftwareIDs(world.names.Slot());
}

HRESULT ListTasks(World& world)
{
    return ContentsOf(world)->GetTaskIDs(world.softwareId.Get(), world.names.Slot());
}

HRESULT GetStoredOfAPolicy(World& world)
{
    return ContentsOf(world)->GetStoredPolicySetting(world.softwareId.Get(), world.section.Get(), world.setting.Get(),
                                                     world.text.Slot());
}

HRESULT GetStoredOfATask(World& world)
{
    return ContentsOf(world)->GetStoredTaskSetting(world.softwareId.Get(), world.taskId.Get(), world.section.Get(),
                                                   world.setting.Get(), world.text.Slot());
}

template <auto object>
HRESULT ListSections(World& world)
{
    return SectionsOf<object>(world)->get_SectionNames(world.names.Slot());
}

template <auto object>
HRESULT ListSettings(World& world)
{
    return SectionsOf<object>(world)->GetSettingNames(world.section.Get(), world.names.Slot());
}

template <auto object>
HRESULT GetStored(World& world)
{
    return SectionsOf<object>(world)->GetStoredSetting(world.section.Get(), world.setting.Get(), world.text.Slot());
}

template <auto object>
HRESULT GetTakenVersion(World& world)
{
    return SectionsOf<object>(world)->get_TakenVersion(world.text.Slot());
}

/// Goes on with the list of the policies, and its enumerator.
void TakeTheList(World& world)
{
    ASSERT_EQ(ListPolicies(world), S_OK);
    world.list = world.names.Take();
    world.enumerator = EnumeratorOf(*world.list);
}

HRESULT GetItem(World& world)
{
    return world.list->get_Item(1, world.text.Slot());
}

HRESULT NewEnumerator(World& world)
{
    return world.list->get__NewEnum(world.object.Slot());
}

HRESULT NextTwo(World& world)
{
    VARIANT values[2]{};
    ULONG fetched = 0;
    const HRESULT code = world.enumerator->Next(2, values, &fetched);
    EXPECT_EQ(fetched, code == S_OK ? 2U : 0U);
    if (code == S_OK) {
        std::swap(*world.text.Slot(), values[0].bstrVal);
        std::swap(*world.second.Slot(), values[1].bstrVal);
        for (VARIANT& value : values) {
            static_cast<void>(VariantClear(&value));
        }
    }
    return code;
}

HRESULT CloneEnumerator(World& world)
{
    IEnumVARIANT* copy = nullptr;
    const HRESULT code = world.enumerator->Clone(&copy);
    EXPECT_EQ(copy != nullptr, code == S_OK);
    if (code == S_OK) {
        world.object.Store(copy);
    }
    return code;
}

// --- what is left ----------------------------------------------------------------------------------------------------

void NoSlotIsTouched(World& world, const Sight& before)
{
    EXPECT_TRUE(world.names.Untouched());
    EXPECT_TRUE(world.text.Untouched());
    EXPECT_TRUE(world.object.Untouched());
    EXPECT_EQ(world.OfAll(), before);
}

Names TakeNames(World& world)
{
    return ReadNames(*world.names.Take());
}

void ThePoliciesAreListed(World& world)
{
    EXPECT_EQ(TakeNames(world), kProducts);
}

void TheSoftwareIsListed(World& world)
{
    EXPECT_EQ(TakeNames(world), (Names{kProduct}));
}

void TheTasksAreListed(World& world)
{
    EXPECT_EQ(TakeNames(world), (Names{kTask, kOtherTask}));
}

void TheSectionsAreListed(World& world)
{
    EXPECT_EQ(TakeNames(world).front(), kSection);
}

void TheSettingsAreListed(World& world)
{
    EXPECT_EQ(TakeNames(world), (Names{kSetting, kOtherSetting}));
}

void TheValueIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(), kValue);
}

void TheVersionIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(), u"20250101000000");
}

void ThereIsNoVersion(World& world)
{
    EXPECT_EQ(world.text.Text(), u"");
}

void TheSecondNameIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(), kOtherProduct);
}

/// Also after a failure: it left the enumerator at its place.
void BothNamesAreThere(World& world)
{
    EXPECT_EQ(world.text.Text(), kProduct);
    EXPECT_EQ(world.second.Text(), kOtherProduct);
}

void TheEnumeratorIsWhole(World& world)
{
    EXPECT_EQ(ReadRest(*world.object.Take().Query<IEnumVARIANT>()), kProducts);
}

template <auto object>
std::vector<Operation> SectionRows()
{
    return {
        {.name = "SectionNames",
         .run = ListSections<object>,
         .codes = {result::OutOfMemory, result::Unexpected},
         .afterFailure = NoSlotIsTouched,
         .afterSuccess = TheSectionsAreListed,
         .fewestFailures = 4},
        {.name = "GetSettingNames",
         .run = ListSettings<object>,
         .codes = {result::OutOfMemory, result::Unexpected},
         .afterFailure = NoSlotIsTouched,
         .afterSuccess = TheSettingsAreListed,
         .fewestFailures = 5},
        {.name = "GetStoredSetting",
         .run = GetStored<object>,
         .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
         .afterFailure = NoSlotIsTouched,
         .afterSuccess = TheValueIsThere,
         .fewestFailures = 4},
    };
}

const std::vector<Operation> kOperations = {
    {.name = "PolicyIDs",
     .run = ListPolicies,
     .codes = {result::OutOfMemory},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = ThePoliciesAreListed,
     .fewestFailures = 4},
    {.name = "TaskSoftwareIDs",
     .run = ListSoftware,
     .codes = {result::OutOfMemory},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = TheSoftwareIsListed,
     .fewestFailures = 4},
    {.name = "GetTaskIDs",
     .run = ListTasks,
     .codes = {result::OutOfMemory},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = TheTasksAreListed,
     .fewestFailures = 5},
    {.name = "GetStoredPolicySetting",
     .run = GetStoredOfAPolicy,
     .codes = {result::OutOfMemory, result::AllocationFailed},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = TheValueIsThere,
     .fewestFailures = 5},
    {.name = "GetStoredTaskSetting",
     .run = GetStoredOfATask,
     .codes = {result::OutOfMemory, result::AllocationFailed},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = TheValueIsThere,
     .fewestFailures = 5},
    {.name = "TakenVersion_OfAProduct",
     .run = GetTakenVersion<&World::product>,
     .codes = {result::OutOfMemory, result::AllocationFailed},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = TheVersionIsThere,
     .fewestFailures = 2},
    {.name = "TakenVersion_OfATask",
     .run = GetTakenVersion<&World::task>,
     .codes = {result::AllocationFailed},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = ThereIsNoVersion},
    {.name = "Item",
     .run = GetItem,
     .codes = {result::AllocationFailed},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = TheSecondNameIsThere,
     .prepare = TakeTheList},
    {.name = "NewEnum",
     .run = NewEnumerator,
     .codes = {result::OutOfMemory},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = TheEnumeratorIsWhole,
     .prepare = TakeTheList},
    {.name = "Next",
     .run = NextTwo,
     .codes = {result::OutOfMemory},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = BothNamesAreThere,
     .prepare = TakeTheList,
     .isMember = false,
     .fewestFailures = 2},
    {.name = "Clone",
     .run = CloneEnumerator,
     .codes = {result::OutOfMemory},
     .afterFailure = NoSlotIsTouched,
     .afterSuccess = TheEnumeratorIsWhole,
     .prepare = TakeTheList,
     .isMember = false},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Listing, FailingMemory, testing::ValuesIn(kOperations), NameOf);
INSTANTIATE_TEST_SUITE_P(ListingOfAProduct, FailingMemory, testing::ValuesIn(SectionRows<&World::product>()), NameOf);
INSTANTIATE_TEST_SUITE_P(ListingOfATask, FailingMemory, testing::ValuesIn(SectionRows<&World::task>()), NameOf);

}  // namespace zupm::test
