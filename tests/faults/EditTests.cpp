// Edits of the policy file. They empty their index before they change the document: a failure after that leaves the
// index empty (or as far as it was rebuilt) and what was deleted or created as it is, until the file is loaded again.
#include <algorithm>

#include "tests/faults/FailingMemoryTest.h"

namespace zupm::test {

namespace {

HRESULT AddPolicy(World& world)
{
    return world.file.Object()->AddPolicy(world.product.Object(), 1);
}

HRESULT AddTask(World& world)
{
    return world.file.Object()->AddTask(world.task.Object(), 1);
}

HRESULT RemovePolicy(World& world)
{
    return world.file.Object()->RemovePolicy(world.softwareId.Get());
}

HRESULT RemoveTask(World& world)
{
    return world.file.Object()->RemoveTask(world.softwareId.Get(), world.taskId.Get());
}

void ChangeProduct(World& world)
{
    EXPECT_EQ(world.product.Put(kSection, kSetting, kNewValue), 0);
}

void RenameProduct(World& world)
{
    EXPECT_EQ(world.product.PutSoftwareID(kNewName), 0);
}

void ChangeTask(World& world)
{
    EXPECT_EQ(world.task.Put(kSection, kSetting, kNewValue), 0);
    EXPECT_EQ(world.task.Data().code, 0);
}

void RenameTask(World& world)
{
    world.task.Identify(kProduct, kNewName);
    EXPECT_EQ(world.task.Data().code, 0);
}

void LoadAgain(World& world)
{
    EXPECT_EQ(world.file.Object()->InitializeFile(world.path.Get(), 0), 0);
}

// --- after a failure -------------------------------------------------------------------------------------------------

/// What no edit may touch: the files, the incoming objects, the other entries of the document, which is well-formed.
void TheRestIsUntouched(World& world, const Sight& before)
{
    EXPECT_EQ(world.OfFolder().files, before.files);
    const World fresh(world.folder);
    const PolicyFileClient reader = world.ReadBack();
    EXPECT_EQ(reader.Policy(kOtherProduct).Data(), fresh.file.Policy(kOtherProduct).Data());
    EXPECT_EQ(reader.FindTask(kProduct, kOtherTask), 0);
    EXPECT_EQ(reader.AssignmentList(), fresh.file.AssignmentList());
}

/// An entry is missing, or only its place exists, or it is whole with one of these values.
template <class Client>
void ExpectOneOf(const Client& found, std::initializer_list<std::u16string_view> values)
{
    const TextResult value = found.Get(kSection, kSetting);
    if (value.code != result::SectionNotFound) {
        ASSERT_EQ(value.code, 0);
        EXPECT_NE(std::ranges::find(values, *value.text), values.end());
        EXPECT_EQ(found.Get(kSection, kOtherSetting), (TextResult{0, u"untouched"}));
    }
}

void ExpectProductOrNone(const PolicyFileClient& file, const char16_t* id,
                         std::initializer_list<std::u16string_view> values)
{
    ProductClient found;
    if (file.GetPolicy(id, found) != result::PolicyNotFound) {
        ASSERT_TRUE(found);
        ExpectOneOf(found, values);
    }
}

void ExpectTaskOrNone(const PolicyFileClient& file, const char16_t* id,
                      std::initializer_list<std::u16string_view> values)
{
    TaskClient found;
    if (file.GetTask(kProduct, id, found) != result::TaskNotFound) {
        ASSERT_TRUE(found);
        ExpectOneOf(found, values);
    }
}

/// The other index is whole in any case.
void TheTasksAreUntouched(World& world, const Sight& before)
{
    EXPECT_EQ(world.file.FindTask(kProduct, kTask), 0);
    EXPECT_EQ(world.file.FindTask(kProduct, kOtherTask), 0);
    TheRestIsUntouched(world, before);
}

void ThePoliciesAreUntouched(World& world, const Sight& before)
{
    EXPECT_EQ(world.file.FindPolicy(kProduct), 0);
    EXPECT_EQ(world.file.FindPolicy(kOtherProduct), 0);
    TheRestIsUntouched(world, before);
}

/// As long as every old entry is found, nothing has changed. After that, entries are lost from the end on, because the
/// index is rebuilt in document order.
void ExpectAllOrLost(World& world, const Sight& before, HRESULT first, HRESULT other)
{
    if (first == 0 && other == 0) {
        EXPECT_EQ(world.OfAll(), before);
    }
}

void TheOldProductIsReplacedOrGone(World& world, const Sight& before)
{
    TheTasksAreUntouched(world, before);
    ExpectAllOrLost(world, before, world.file.FindPolicy(kProduct), world.file.FindPolicy(kOtherProduct));
    ExpectProductOrNone(world.ReadBack(), kProduct, {kValue, kNewValue});
}

void TheNewProductIsThereOrNot(World& world, const Sight& before)
{
    TheTasksAreUntouched(world, before);
    ExpectProductOrNone(world.ReadBack(), kProduct, {kValue});
    ExpectProductOrNone(world.ReadBack(), kNewName, {kValue});
}

void TheOldTaskIsReplacedOrGone(World& world, const Sight& before)
{
    ThePoliciesAreUntouched(world, before);
    ExpectAllOrLost(world, before, world.file.FindTask(kProduct, kTask), world.file.FindTask(kProduct, kOtherTask));
    ExpectTaskOrNone(world.ReadBack(), kTask, {kValue, kNewValue});
}

void TheNewTaskIsThereOrNot(World& world, const Sight& before)
{
    ThePoliciesAreUntouched(world, before);
    ExpectTaskOrNone(world.ReadBack(), kTask, {kValue});
    ExpectTaskOrNone(world.ReadBack(), kNewName, {kValue});
}

// --- after a success -------------------------------------------------------------------------------------------------

void TheProductIsReplaced(World& world)
{
    EXPECT_EQ(world.file.Policy(kProduct).Data(), world.product.Data());
    EXPECT_EQ(world.file.FindPolicy(kOtherProduct), 0);
}

void TheNewProductIsThere(World& world)
{
    EXPECT_EQ(world.file.Policy(kNewName).Data(), world.product.Data());
    EXPECT_EQ(world.file.FindPolicy(kProduct), 0);
    EXPECT_EQ(world.file.FindPolicy(kOtherProduct), 0);
}

void TheTaskIsReplaced(World& world)
{
    EXPECT_EQ(world.file.Task(kProduct, kTask).Get(kSection, kSetting), (TextResult{0, kNewValue}));
    EXPECT_EQ(world.file.Task(kProduct, kTask).DisplayName(), world.task.DisplayName());
    EXPECT_EQ(world.file.FindTask(kProduct, kOtherTask), 0);
}

void TheNewTaskIsThere(World& world)
{
    EXPECT_EQ(world.file.Task(kProduct, kNewName).Get(kSection, kSetting), (TextResult{0, kValue}));
    EXPECT_EQ(world.file.Task(kProduct, kNewName).DisplayName(), world.task.DisplayName());
    EXPECT_EQ(world.file.FindTask(kProduct, kTask), 0);
}

void TheProductIsGone(World& world)
{
    EXPECT_EQ(world.file.FindPolicy(kProduct), result::PolicyNotFound);
    EXPECT_EQ(world.file.FindPolicy(kOtherProduct), 0);
}

void TheTaskIsGone(World& world)
{
    EXPECT_EQ(world.file.FindTask(kProduct, kTask), result::TaskNotFound);
    EXPECT_EQ(world.file.FindTask(kProduct, kOtherTask), 0);
}

const std::vector<HRESULT> kAddCodes = {result::OutOfMemory, result::AllocationFailed, result::Unexpected};

const std::vector<Operation> kOperations = {
    {.name = "AddPolicy_InPlaceOfAnOldOne",
     .run = AddPolicy,
     .codes = kAddCodes,
     .afterFailure = TheOldProductIsReplacedOrGone,
     .afterSuccess = TheProductIsReplaced,
     .prepare = ChangeProduct,
     .recover = LoadAgain,
     .fewestFailures = 50},
    {.name = "AddPolicy_New",
     .run = AddPolicy,
     .codes = kAddCodes,
     .afterFailure = TheNewProductIsThereOrNot,
     .afterSuccess = TheNewProductIsThere,
     .prepare = RenameProduct,
     .recover = LoadAgain,
     .fewestFailures = 50},
    {.name = "AddTask_InPlaceOfAnOldOne",
     .run = AddTask,
     .codes = kAddCodes,
     .afterFailure = TheOldTaskIsReplacedOrGone,
     .afterSuccess = TheTaskIsReplaced,
     .prepare = ChangeTask,
     .recover = LoadAgain,
     .fewestFailures = 50,
     .stride = 2},
    {.name = "AddTask_New",
     .run = AddTask,
     .codes = kAddCodes,
     .afterFailure = TheNewTaskIsThereOrNot,
     .afterSuccess = TheNewTaskIsThere,
     .prepare = RenameTask,
     .recover = LoadAgain,
     .fewestFailures = 50,
     .stride = 2},
    {.name = "RemovePolicy",
     .run = RemovePolicy,
     .codes = kAddCodes,
     .afterFailure = TheOldProductIsReplacedOrGone,
     .afterSuccess = TheProductIsGone,
     .recover = LoadAgain,
     .fewestFailures = 3},
    {.name = "RemoveTask",
     .run = RemoveTask,
     .codes = kAddCodes,
     .afterFailure = TheOldTaskIsReplacedOrGone,
     .afterSuccess = TheTaskIsGone,
     .recover = LoadAgain,
     .fewestFailures = 3},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Edit, FailingMemory, testing::ValuesIn(kOperations), NameOf);

}  // namespace zupm::test
