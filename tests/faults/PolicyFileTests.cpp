// The policy file object: loading, writing, properties, objects handed out.
#include <algorithm>

#include "tests/faults/FailingMemoryTest.h"

namespace zupm::test {

namespace {

// --- loading ---------------------------------------------------------------------------------------------------------

HRESULT Load(World& world)
{
    return world.file.Object()->InitializeFile(world.path.Get(), 0);
}

/// What was loaded before is closed, unless there was not even memory for the path: nothing of it is reachable any
/// more. The file is untouched.
void NothingIsLoaded(World& world, const Sight& before)
{
    if (world.file.FindPolicy(kProduct) == 0) {
        EXPECT_EQ(world.OfAll(), before);
        return;
    }
    EXPECT_EQ(world.file.FindPolicy(kProduct), result::NotInitialised);
    EXPECT_EQ(world.file.FindTask(kProduct, kTask), result::NotInitialised);
    EXPECT_EQ(world.file.RemovePolicy(kProduct), result::NotInitialised);
    EXPECT_EQ(world.OfFolder().files, before.files);
}

void TheFileIsLoaded(World& world)
{
    EXPECT_EQ(world.OfFile(), World(world.folder).OfFile());
}

// --- writing ---------------------------------------------------------------------------------------------------------

HRESULT WriteOver(World& world)
{
    return world.file.Object()->WriteFile(world.path.Get(), 0);
}

HRESULT WriteNew(World& world)
{
    return world.file.Object()->WriteFile(world.newPath.Get(), 0);
}

/// Versions that were written into the document stay there, whole; everything else is as before.
void TheFolderIsAsBefore(World& world, const Sight& before)
{
    EXPECT_EQ(world.OfFolder().files, before.files);
    const std::u16string text = world.file.Buffer().value_or(std::u16string());
    EXPECT_EQ(text.find(u"version=\"\""), text.npos);
    EXPECT_EQ(text.find(u"Path=\"\""), text.npos);
    const PolicyFileClient reader = world.ReadBack();
    EXPECT_EQ(reader.Policy(kProduct).Data(), world.product.Data());
    EXPECT_EQ(reader.FindTask(kProduct, kTask), 0);
}

template <bool isNew>
void TheDocumentIsInTheFile(World& world)
{
    EXPECT_EQ(world.folder.Names().size(), isNew ? 2U : 1U);
    const std::u16string path = isNew ? world.newPath.Text() : world.path.Text();
    EXPECT_EQ(ReadBytes(path), Utf8(world.file.Buffer().value_or(std::u16string())));
    EXPECT_NE(ReadBytes(path).find("<PolicyGroup Path=\"0_4\">"), std::string::npos);
}

HRESULT WriteBuffer(World& world)
{
    return world.file.Object()->WriteFileBuffer(world.text.Slot());
}

void TheBufferIsWholeOrNull(World& world)
{
    EXPECT_TRUE(world.text.IsNull() || world.text.Text() == world.file.Buffer());
}

// --- editing in place ------------------------------------------------------------------------------------------------

ComPtr<IPolicyFileEdit> EditOf(const PolicyFileClient& file)
{
    return ComPtr<IPolicyFile>(file.Object()).Query<IPolicyFileEdit>();
}

HRESULT OpenForEdit(World& world)
{
    return EditOf(world.file)->OpenForEdit(world.path.Get(), 0);
}

/// Nothing is loaded, and the next caller finds the file's lock free.
void NothingIsLoadedAndNothingHeld(World& world, const Sight& before)
{
    NothingIsLoaded(world, before);
    EXPECT_EQ(EditOf(world.file)->CommitEdit(1), result::NotInitialised);
    EXPECT_EQ(EditOf(PolicyFileClient())->OpenForEdit(world.path.Get(), 0), S_OK);
}

void OpenTheEdit(World& world)
{
    ASSERT_EQ(OpenForEdit(world), S_OK);
}

HRESULT RehearseCommit(World& world)
{
    return EditOf(world.file)->RehearseCommit(0);
}

HRESULT CommitEdit(World& world)
{
    return EditOf(world.file)->CommitEdit(0);
}

/// The edit is still open and can be committed; the file is as it was.
void TheEditIsStillOpen(World& world, const Sight& before)
{
    TheFolderIsAsBefore(world, before);
    LONG changed = -1;
    EXPECT_EQ(EditOf(world.file)->HasFileChanged(&changed), S_OK);
    EXPECT_EQ(changed, 0);
}

void NothingIsDifferent(World&) {}

// --- the file on disk ------------------------------------------------------------------------------------------------

ComPtr<IPolicyFileContents> ContentsOf(const PolicyFileClient& file)
{
    return ComPtr<IPolicyFile>(file.Object()).Query<IPolicyFileContents>();
}

HRESULT HasChangedOnDisk(World& world)
{
    return ContentsOf(world.file)->get_HasChangedOnDisk(world.number.Slot());
}

void TheFileHasNotChanged(World& world)
{
    EXPECT_EQ(world.number.Value(), 0);
}

HRESULT WriteIfUnchanged(World& world)
{
    return ContentsOf(world.file)->WriteIfUnchanged(0);
}

/// The file is as it was and still counts as the one that was loaded; it is not locked.
void TheFileCanStillBeWritten(World& world, const Sight& before)
{
    TheFolderIsAsBefore(world, before);
    EXPECT_EQ(HasChangedOnDisk(world), S_OK);
    EXPECT_EQ(world.number.Value(), 0);
    EXPECT_EQ(EditOf(PolicyFileClient())->OpenForEdit(world.path.Get(), 0), S_OK);
}

void TheFileIsWrittenAndCounts(World& world)
{
    TheDocumentIsInTheFile<false>(world);
    EXPECT_EQ(WriteIfUnchanged(world), S_OK);
}

// --- notices ---------------------------------------------------------------------------------------------------------

/// Two of each kind that a name or an ID can be the reason of, under names that are no short strings.
constexpr char kOddFile[] =
    "<R><PolicyRoot version='a'><PolicyGroup><Policy><Product SoftwareID='a software ID that is &#108;ong'>"
    "<S name='a section with a l&#111;ng name'><V name='a setting with a l&#111;ng name'/>"
    "<V name='a setting with a l&#111;ng name'/></S><S name='a section with a l&#111;ng name'/></Product>"
    "<Product SoftwareID='a software ID that is &#108;ong'/></Policy></PolicyGroup></PolicyRoot><TaskRoot>"
    "<TaskGroup SoftwareID='a software ID that is &#108;ong' TaskID='a task ID that is &#108;ong'><Task><S name='Task'>"
    "<V name='a setting with a l&#111;ng name'>a value that is &#108;ong</V>"
    "<V name='A SETTING WITH A L&#111;NG NAME'>another value that is &#108;ong</V>"
    "<V name='CreatorSoftwareID'>a value that is &#108;ong</V></S></Task><Task/></TaskGroup></TaskRoot></R>";
constexpr LONG kOddities = 7;

void LoadTheOddFile(World& world)
{
    ASSERT_EQ(world.file.Load(world.folder.Write(u"odd.xml", kOddFile)), 0);
}

HRESULT TakeNotices(World& world)
{
    ComPtr<IPolicyNotices> notices;
    const HRESULT code = ContentsOf(world.file)->get_Notices(notices.Put());
    LONG count = 0;
    EXPECT_EQ(code == S_OK ? notices->get_Count(&count) : S_OK, S_OK);
    EXPECT_EQ(count, code == S_OK ? kOddities : 0);
    return code;
}

void TheOddFileIsStillLoaded(World& world, const Sight&)
{
    EXPECT_EQ(world.file.FindPolicy(u"a software ID that is long"), S_OK);
    EXPECT_EQ(TakeNotices(world), S_OK);
}

ComPtr<IPolicyNotices> g_notices;

void KeepNotices(World& world)
{
    LoadTheOddFile(world);
    ASSERT_EQ(ContentsOf(world.file)->get_Notices(g_notices.Put()), S_OK);
}

HRESULT TextOfTheLastNotice(World& world)
{
    return g_notices->get_Text(kOddities - 1, world.text.Slot());
}

void TheSentenceIsThere(World& world)
{
    EXPECT_EQ(world.text.Text(),
              u"task a software ID that is long a task ID that is long occurs again; only the first "
              u"is used");
}

// --- properties ------------------------------------------------------------------------------------------------------

template <auto getter>
HRESULT GetProperty(World& world)
{
    return (world.file.Object()->*getter)(world.text.Slot());
}

void TheTextIsUntouchedOrNull(World& world, const Sight& before)
{
    EXPECT_TRUE(world.text.Untouched() || world.text.IsNull());
    EXPECT_EQ(world.OfAll(), before);
}

void TheTextIsThere(World& world)
{
    EXPECT_FALSE(world.text.Untouched() || world.text.IsNull());
}

// --- objects handed out ----------------------------------------------------------------------------------------------

HRESULT GetPolicy(World& world)
{
    return world.file.Object()->GetPolicy(world.softwareId.Get(), world.object.Slot());
}

HRESULT GetTask(World& world)
{
    return world.file.Object()->GetTask(world.softwareId.Get(), world.taskId.Get(), world.object.Slot());
}

HRESULT GetTaskInfo(World& world)
{
    return world.file.Object()->GetTaskInfo(world.object.Slot());
}

void NoObjectIsOut(World& world, const Sight& before)
{
    EXPECT_TRUE(world.object.Untouched() || world.object.IsNull());
    EXPECT_EQ(world.OfAll(), before);
}

/// An object whose binding failed is handed out all the same; then every operation of it says so.
void TheProductIsWholeOrNotBound(World& world)
{
    ProductClient product(world.object.Take().Query<IPolicyProduct>());
    ASSERT_TRUE(product);
    if (product.Put(kSection, kNewName, u"x") == result::NotInitialised) {
        EXPECT_EQ(product.Get(kSection, kSetting).code, result::NotInitialised);
        return;
    }
    EXPECT_EQ(product.RemoveSetting(kSection, kNewName), 0);
    EXPECT_EQ(product.Data(), world.product.Data());
}

void TheTaskIsWholeOrNotBound(World& world)
{
    TaskClient task(world.object.Take().Query<IPolicyTask>());
    ASSERT_TRUE(task);
    if (const TextResult value = task.Get(kSection, kSetting); value.code != result::NotInitialised) {
        EXPECT_EQ(value, (TextResult{0, kValue}));
        EXPECT_EQ(task.DisplayName(), world.task.DisplayName());
    }
}

/// A pair that finds no memory is left out.
void TheEnumeratorHasPairsOfTheFile(World& world)
{
    TaskInfoClient tasks(world.object.Take().Query<ITaskInfo>());
    ASSERT_NE(tasks.Object(), nullptr);
    const std::vector<std::u16string> all = world.file.Tasks().All();
    for (const std::u16string& pair : tasks.All()) {
        EXPECT_NE(std::ranges::find(all, pair), all.end());
    }
}

HRESULT CreateTask(World& world)
{
    return world.file.Object()->CreateTask(world.newTask.Slot());
}

HRESULT CreatePolicy(World& world)
{
    return world.file.Object()->CreatePolicy(world.newPolicy.Slot());
}

/// Its result is success whatever the platform said.
void TheNewTaskIsWholeOrNull(World& world)
{
    if (!world.newTask.IsNull()) {
        EXPECT_EQ(TaskClient(world.newTask.Take()).Put(kSection, kSetting, kValue), 0);
    }
}

void NoPolicyIsOut(World& world, const Sight& before)
{
    EXPECT_TRUE(world.newPolicy.IsNull());
    EXPECT_EQ(world.OfAll(), before);
}

void TheNewPolicyIsWhole(World& world)
{
    ProductClient product(world.newPolicy.Take());
    ASSERT_TRUE(product);
    EXPECT_EQ(product.Put(kSection, kSetting, kValue), 0);
}

const std::vector<Operation> kOperations = {
    {.name = "InitializeFile",
     .run = Load,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = NothingIsLoaded,
     .afterSuccess = TheFileIsLoaded,
     .fewestFailures = 25},
    {.name = "WriteFile_OverAnOldOne",
     .run = WriteOver,
     .codes = {result::OutOfMemory},
     .afterFailure = TheFolderIsAsBefore,
     .afterSuccess = TheDocumentIsInTheFile<false>,
     .fewestFailures = 10},
    {.name = "WriteFile_ToANewOne",
     .run = WriteNew,
     .codes = {result::OutOfMemory},
     .afterFailure = TheFolderIsAsBefore,
     .afterSuccess = TheDocumentIsInTheFile<true>,
     .fewestFailures = 10},
    {.name = "OpenForEdit",
     .run = OpenForEdit,
     .codes = {result::OutOfMemory, result::Unexpected},
     .afterFailure = NothingIsLoadedAndNothingHeld,
     .afterSuccess = TheFileIsLoaded,
     .fewestFailures = 30},
    {.name = "RehearseCommit",
     .run = RehearseCommit,
     .codes = {result::OutOfMemory},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = NothingIsDifferent,
     .prepare = OpenTheEdit},
    {.name = "CommitEdit",
     .run = CommitEdit,
     .codes = {result::OutOfMemory},
     .afterFailure = TheEditIsStillOpen,
     .afterSuccess = TheDocumentIsInTheFile<false>,
     .prepare = OpenTheEdit,
     .fewestFailures = 10},
    {.name = "HasChangedOnDisk",
     .run = HasChangedOnDisk,
     .codes = {result::OutOfMemory},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheFileHasNotChanged},
    {.name = "WriteIfUnchanged",
     .run = WriteIfUnchanged,
     .codes = {result::OutOfMemory},
     .afterFailure = TheFileCanStillBeWritten,
     .afterSuccess = TheFileIsWrittenAndCounts,
     .fewestFailures = 10},
    {.name = "Notices",
     .run = TakeNotices,
     .codes = {result::OutOfMemory},
     .afterFailure = TheOddFileIsStillLoaded,
     .afterSuccess = NothingIsDifferent,
     .prepare = LoadTheOddFile,
     .fewestFailures = 20},
    {.name = "Notices_Text",
     .run = TextOfTheLastNotice,
     .codes = {result::OutOfMemory, result::AllocationFailed},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheSentenceIsThere,
     .prepare = KeepNotices,
     .fewestFailures = 3},
    {.name = "WriteFileBuffer",
     .run = WriteBuffer,
     .codes = {},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheBufferIsWholeOrNull,
     .fewestFailures = 2},
    {.name = "VersionTask",
     .run = GetProperty<&IPolicyFile::get_VersionTask>,
     .codes = {result::OutOfMemory},
     .afterFailure = TheTextIsUntouchedOrNull,
     .afterSuccess = TheTextIsThere},
    {.name = "VersionPolicy",
     .run = GetProperty<&IPolicyFile::get_VersionPolicy>,
     .codes = {result::OutOfMemory},
     .afterFailure = TheTextIsUntouchedOrNull,
     .afterSuccess = TheTextIsThere},
    {.name = "PolicyAssignmentList",
     .run = GetProperty<&IPolicyFile::get_PolicyAssignmentList>,
     .codes = {result::OutOfMemory},
     .afterFailure = TheTextIsUntouchedOrNull,
     .afterSuccess = TheTextIsThere},
    {.name = "GetPolicy",
     .run = GetPolicy,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = NoObjectIsOut,
     .afterSuccess = TheProductIsWholeOrNotBound,
     .fewestFailures = 20},
    {.name = "GetTask",
     .run = GetTask,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = NoObjectIsOut,
     .afterSuccess = TheTaskIsWholeOrNotBound,
     .fewestFailures = 20},
    {.name = "GetTaskInfo",
     .run = GetTaskInfo,
     .codes = {result::OutOfMemory},
     .afterFailure = NoObjectIsOut,
     .afterSuccess = TheEnumeratorHasPairsOfTheFile,
     .fewestFailures = 3},
    {.name = "CreateTask",
     .run = CreateTask,
     .codes = {},
     .afterFailure = EverythingIsAsBefore,
     .afterSuccess = TheNewTaskIsWholeOrNull,
     .fewestFailures = 10},
    {.name = "CreatePolicy",
     .run = CreatePolicy,
     .codes = {result::OutOfMemory, result::Unexpected, result::AllocationFailed},
     .afterFailure = NoPolicyIsOut,
     .afterSuccess = TheNewPolicyIsWhole,
     .fewestFailures = 10},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(PolicyFile, FailingMemory, testing::ValuesIn(kOperations), NameOf);

}  // namespace zupm::test
