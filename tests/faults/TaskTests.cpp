// The task object, member by member, and the enumerator.
#include <algorithm>
#include <utility>

#include "tests/faults/SectionOperations.h"

namespace zupm::test {

namespace {

using Sections = SectionOperations<&World::task>;

IPolicyTask& TaskOf(World& world)
{
    return *world.task.Object();
}

template <auto getter>
HRESULT GetText(World& world)
{
    return (TaskOf(world).*getter)(world.text.Slot());
}

template <auto setter>
HRESULT PutText(World& world)
{
    return (TaskOf(world).*setter)(world.newName.Get());
}

HRESULT GetPriority(World& world)
{
    return TaskOf(world).get_Priority(world.number.Slot());
}

HRESULT PutPriority(World& world)
{
    return TaskOf(world).put_Priority(7);
}

HRESULT WriteIni(World& world)
{
    return TaskOf(world).WriteTaskDataToIniFile(world.iniPath.Get());
}

HRESULT GetFirst(World& world)
{
    return world.tasks.Object()->GetFirst(world.text.Slot(), world.second.Slot());
}

HRESULT GetNext(World& world)
{
    return world.tasks.Object()->GetNext(world.text.Slot(), world.second.Slot());
}

// --- what is left ----------------------------------------------------------------------------------------------------

void ATextIsThere(World& world)
{
    EXPECT_FALSE(world.text.Untouched() || world.text.IsNull());
}

template <auto getter>
void TheNewTextIsThere(World& world)
{
    Bstr field;
    EXPECT_EQ((TaskOf(world).*getter)(field.Slot()), 0);
    EXPECT_EQ(field.Text(), kNewName);
}

void TheNumberIsThere(World& world)
{
    EXPECT_EQ(world.number.Value(), 0);
}

void TheNewNumberIsThere(World& world)
{
    EXPECT_EQ(GetPriority(world), 0);
    EXPECT_EQ(world.number.Value(), 7);
}

/// A cursor that could not be opened again refuses until the task's data is read, which opens one.
void TheSectionIsThereOrGone(World& world, const Sight& before)
{
    const TextResult value = world.task.Get(kSection, kSetting);
    if (value.code == 0) {
        EXPECT_EQ(world.OfAll(), before);
        return;
    }
    EXPECT_TRUE(value.code == result::CursorNotInitialised || value.code == result::SectionNotFound);
    EXPECT_EQ(world.task.Data().code, 0);
    EXPECT_EQ(world.task.Get(kSection, kSetting).code, result::SectionNotFound);
    EXPECT_EQ(world.task.Get(u"Task", u"TaskID"), (TextResult{0, kTask}));
}

void TheSectionIsGone(World& world)
{
    EXPECT_EQ(world.task.Get(kSection, kSetting).code, result::SectionNotFound);
    EXPECT_EQ(world.task.Get(u"Task", u"TaskID"), (TextResult{0, kTask}));
}

/// Attributes and settings are read one by one; reading again completes them. Nothing of the task's own is lost.
void TheTaskItselfIsAsBefore(World& world, const Sight& before)
{
    EXPECT_TRUE(world.text.Untouched() || world.text.IsNull());
    EXPECT_EQ(world.OfAll(), before);
}

/// A setting of the write-back that finds no memory is left out; the attributes carry the fields too.
void TheDataHasTheTask(World& world)
{
    const std::u16string data = world.text.Text();
    for (const std::u16string_view part :
         {u"TaskID=\"{00000000-0000-0000-0000-000000000001}\"", u"TaskType=\"the type of the first task\"",
          u"the value that the file has"}) {
        EXPECT_NE(data.find(part), data.npos);
    }
}

/// Lines are written one by one: an INI file that ends early has whole lines. No temporary is left.
void TheIniFileHasTheFirstLines(World& world, const Sight& before)
{
    const TempFolder elsewhere;
    const World fresh(elsewhere);
    EXPECT_EQ(world.OfTask(), fresh.OfTask());
    Sight folder = world.OfFolder();
    std::erase_if(folder.files, [](const std::string& file) { return file.starts_with("task.ini: [Task]\r\n"); });
    EXPECT_EQ(folder.files, before.files);
}

void TheIniFileHasTheIdentity(World& world)
{
    const std::string text = world.folder.Read(kIniName);
    EXPECT_TRUE(text.starts_with("[Task]\r\nTaskName=the name of the first task\r\n"));
    EXPECT_TRUE(text.ends_with("\r\n"));
}

void TheFirstPairIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(), kProduct);
    EXPECT_EQ(world.second.Text(), kTask);
}

/// The cursor has moved: a failed step is a step. Starting anew gives every pair.
void TheEnumerationCanStartAnew(World& world, const Sight&)
{
    EXPECT_TRUE(world.text.IsNull() || world.second.IsNull());
    EXPECT_EQ(world.tasks.All(), world.file.Tasks().All());
    EXPECT_EQ(world.tasks.First().code, 0);
}

void TheSecondPairIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(), kProduct);
    EXPECT_EQ(world.second.Text(), kOtherTask);
}

// --- rows ------------------------------------------------------------------------------------------------------------

template <auto getter>
Operation Getter(const char* name)
{
    return {.name = name,
            .run = GetText<getter>,
            .codes = {result::AllocationFailed},
            .afterFailure = [](World& world, const Sight&) { EXPECT_TRUE(world.text.IsNull()); },
            .afterSuccess = ATextIsThere};
}

template <auto setter, auto getter>
Operation Setter(const char* name)
{
    return {.name = name,
            .run = PutText<setter>,
            .codes = {result::OutOfMemory},
            .afterFailure = EverythingIsAsBefore,
            .afterSuccess = TheNewTextIsThere<getter>};
}

const std::vector<Operation> kOperations = {
    Getter<&IPolicyTask::get_CreatorID>("CreatorID"),
    Getter<&IPolicyTask::get_SoftwareID>("SoftwareID"),
    Getter<&IPolicyTask::get_TaskID>("TaskID"),
    Getter<&IPolicyTask::get_DisplayName>("DisplayName"),
    Getter<&IPolicyTask::get_TaskType>("TaskType"),
    Getter<&IPolicyTask::get_PlatformsSupported>("PlatformsSupported"),
    {.name = "Version",
     // The one getter that does not free what the slot holds.
     .run = [](World& world) -> HRESULT {
         *world.text.Slot() = nullptr;
         return TaskOf(world).get_Version(world.text.Slot());
     },
     .codes = {result::AllocationFailed},
     .afterFailure = [](World& world, const Sight&) { EXPECT_TRUE(world.text.IsNull()); },
     .afterSuccess = ATextIsThere,
     .prepare = [](World& world) { SysFreeString(std::exchange(*world.text.Slot(), nullptr)); },
     .recover = [](World& world) { EXPECT_TRUE(world.text.IsNull()); }},
    Setter<&IPolicyTask::put_CreatorID, &IPolicyTask::get_CreatorID>("PutCreatorID"),
    Setter<&IPolicyTask::put_SoftwareID, &IPolicyTask::get_SoftwareID>("PutSoftwareID"),
    Setter<&IPolicyTask::put_TaskID, &IPolicyTask::get_TaskID>("PutTaskID"),
    Setter<&IPolicyTask::put_DisplayName, &IPolicyTask::get_DisplayName>("PutDisplayName"),
    Setter<&IPolicyTask::put_TaskType, &IPolicyTask::get_TaskType>("PutTaskType"),
    Setter<&IPolicyTask::put_PlatformsSupported, &IPolicyTask::get_PlatformsSupported>("PutPlatformsSupported"),
    {.name = "Priority",
     .run = GetPriority,
     .codes = {},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheNumberIsThere,
     .fewestFailures = 0},
    {.name = "PutPriority",
     .run = PutPriority,
     .codes = {},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheNewNumberIsThere,
     .fewestFailures = 0},
    {.name = "TaskData",
     .run = GetText<&IPolicyTask::get_TaskData>,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = TheTaskItselfIsAsBefore,
     .afterSuccess = TheDataHasTheTask,
     .fewestFailures = 30},
    {.name = "RemoveSection",
     .run = Sections::RemoveSection,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = TheSectionIsThereOrGone,
     .afterSuccess = TheSectionIsGone,
     .recover = Sections::PutTheSettingBack,
     .fewestFailures = 5},
    {.name = "WriteTaskDataToIniFile",
     .run = WriteIni,
     .codes = {result::OutOfMemory, result::GeneralFailure, result::Unexpected},
     .afterFailure = TheIniFileHasTheFirstLines,
     .afterSuccess = TheIniFileHasTheIdentity,
     .fewestFailures = 8,
     .stride = 29},  // a file is replaced for each line, in steps that are the same for all
};

const std::vector<Operation> kSteps = {
    {.name = "GetFirst",
     .run = GetFirst,
     .codes = {result::AllocationFailed},
     .afterFailure = TheEnumerationCanStartAnew,
     .afterSuccess = TheFirstPairIsThere,
     .fewestFailures = 2},
    {.name = "GetNext",
     .run = GetNext,
     .codes = {result::AllocationFailed},
     .afterFailure = TheEnumerationCanStartAnew,
     .afterSuccess = TheSecondPairIsThere,
     .fewestFailures = 2},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Task, FailingMemory, testing::ValuesIn(kOperations), NameOf);
INSTANTIATE_TEST_SUITE_P(TaskSettings, FailingMemory, testing::ValuesIn(Sections::Rows()), NameOf);
INSTANTIATE_TEST_SUITE_P(Enumerator, FailingMemory, testing::ValuesIn(kSteps), NameOf);

}  // namespace zupm::test
