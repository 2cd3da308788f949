// Which members of which object take the object's lock, that it is held to the end of them, and that everything they
// call runs inside it.
#include <gtest/gtest.h>

#include "interfaces/InterfaceTables.h"
#include "platform/CriticalSection.h"
#include "tests/locks/LockUse.h"
#include "tests/support/ActingObjects.h"
#include "tests/support/Outs.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

constexpr char kFile[] =
    "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'><Section name='S'><Setting name='N'>v</Setting>"
    "</Section></Product></Policy></PolicyGroup></PolicyRoot><TaskRoot><TaskGroup SoftwareID='A' TaskID='1'><Task>"
    "<Section name='S'><Setting name='N'>v</Setting></Section></Task></TaskGroup></TaskRoot></R>";

enum class ObjectLock { Taken, NotTaken };

/// A file with a product and a task of it, and arguments for every member.
class World {
public:
    World() { EXPECT_EQ(file->InitializeFile(path.Get(), 0), 0); }

    /// Releases what a call handed out.
    void EmptySlots()
    {
        text.Clear();
        static_cast<void>(object.Take());
        static_cast<void>(newTask.Take());
        static_cast<void>(newPolicy.Take());
        static_cast<void>(names.Take());
    }
    [[nodiscard]] ComPtr<IPolicyFileContents> Contents() const { return file.Query<IPolicyFileContents>(); }
    [[nodiscard]] ComPtr<IPolicyFileEdit> Edit() const { return file.Query<IPolicyFileEdit>(); }

    TempFolder folder;
    Bstr path{folder.Write(u"policy.xml", kFile)};
    Bstr out{folder.Path(u"out")};
    Bstr a{u"A"};
    Bstr one{u"1"};
    Bstr section{u"S"};
    Bstr name{u"N"};
    ComPtr<IPolicyFile> file = Create<IPolicyFile>();
    ComPtr<IPolicyProduct> product = Create<IPolicyProduct>();
    ComPtr<IPolicyTask> task = Create<IPolicyTask>();
    OutText text;
    OutNumber number;
    OutObject<IUnknown> object;
    OutObject<IPolicyTask> newTask;
    OutObject<IPolicyProduct> newPolicy;
    OutObject<IPolicyNames> names;
};

/// Runs `call` and returns the outermost section that it enters; null when it enters none.
template <class Call>
const CCriticalSection* OutermostOf(Call call)
{
    const LockUse use;
    call();
    return use.Entries().empty() ? nullptr : use.Entries().front().section;
}

/// The number of sections other than `lock` that were entered without `lock` as the outermost one.
int EnteredOutside(const LockUse& use, const CCriticalSection* lock)
{
    int count = 0;
    for (const LockEntry& entry : use.Entries()) {
        count += entry.section != lock && (entry.held.empty() || entry.held.front() != lock) ? 1 : 0;
    }
    return count;
}

struct MemberRow {
    const char* name;
    ObjectLock lock;
    HRESULT (*call)(World& world);
};

template <class Interface>
ComPtr<IPolicySections> SectionsOf(const ComPtr<Interface>& object)
{
    return object.template Query<IPolicySections>();
}

constexpr MemberRow kFileMembers[] = {
    {"InitializeFile", ObjectLock::Taken, [](World& w) { return w.file->InitializeFile(w.path.Get(), 0); }},
    {"GetPolicy", ObjectLock::Taken, [](World& w) { return w.file->GetPolicy(w.a.Get(), w.object.Slot()); }},
    {"GetTask", ObjectLock::Taken, [](World& w) { return w.file->GetTask(w.a.Get(), w.one.Get(), w.object.Slot()); }},
    {"GetTaskInfo", ObjectLock::Taken, [](World& w) { return w.file->GetTaskInfo(w.object.Slot()); }},
    {"AddPolicy", ObjectLock::Taken, [](World& w) { return w.file->AddPolicy(w.product.Get(), 1); }},
    {"AddTask", ObjectLock::Taken, [](World& w) { return w.file->AddTask(w.task.Get(), 1); }},
    {"WriteFile", ObjectLock::Taken, [](World& w) { return w.file->WriteFile(w.out.Get(), 0); }},
    {"WriteFileBuffer", ObjectLock::Taken, [](World& w) { return w.file->WriteFileBuffer(w.text.Slot()); }},
    {"VersionTask", ObjectLock::NotTaken, [](World& w) { return w.file->get_VersionTask(w.text.Slot()); }},
    {"VersionPolicy", ObjectLock::NotTaken, [](World& w) { return w.file->get_VersionPolicy(w.text.Slot()); }},
    {"PolicyAssignmentList", ObjectLock::NotTaken,
     [](World& w) { return w.file->get_PolicyAssignmentList(w.text.Slot()); }},
    {"CreateTask", ObjectLock::NotTaken, [](World& w) { return w.file->CreateTask(w.newTask.Slot()); }},
    {"CreatePolicy", ObjectLock::NotTaken, [](World& w) { return w.file->CreatePolicy(w.newPolicy.Slot()); }},
    {"RemovePolicy", ObjectLock::Taken, [](World& w) { return w.file->RemovePolicy(w.a.Get()); }},
    {"RemoveTask", ObjectLock::Taken, [](World& w) { return w.file->RemoveTask(w.a.Get(), w.one.Get()); }},
};

constexpr MemberRow kFileContentsMembers[] = {
    {"PolicyIDs", ObjectLock::Taken, [](World& w) { return w.Contents()->get_PolicyIDs(w.names.Slot()); }},
    {"TaskSoftwareIDs", ObjectLock::Taken, [](World& w) { return w.Contents()->get_TaskSoftwareIDs(w.names.Slot()); }},
    {"GetTaskIDs", ObjectLock::Taken, [](World& w) { return w.Contents()->GetTaskIDs(w.a.Get(), w.names.Slot()); }},
    {"HasChangedOnDisk", ObjectLock::Taken,
     [](World& w) { return w.Contents()->get_HasChangedOnDisk(w.number.Slot()); }},
    {"WriteIfUnchanged", ObjectLock::Taken, [](World& w) { return w.Contents()->WriteIfUnchanged(0); }},
    {"Notices", ObjectLock::Taken, [](World& w) { return w.Contents()->get_Notices(ComPtr<IPolicyNotices>().Put()); }},
    {"GetStoredPolicySetting", ObjectLock::Taken,
     [](World& w) {
         return w.Contents()->GetStoredPolicySetting(w.a.Get(), w.section.Get(), w.name.Get(), w.text.Slot());
     }},
    {"GetStoredTaskSetting", ObjectLock::Taken,
     [](World& w) {
         return w.Contents()->GetStoredTaskSetting(w.a.Get(), w.one.Get(), w.section.Get(), w.name.Get(),
                                                   w.text.Slot());
     }},
};

constexpr MemberRow kFileEditMembers[] = {
    {"OpenForEdit", ObjectLock::Taken, [](World& w) { return w.Edit()->OpenForEdit(w.path.Get(), 0); }},
    {"HasFileChanged", ObjectLock::Taken, [](World& w) { return w.Edit()->HasFileChanged(w.number.Slot()); }},
    {"RehearseCommit", ObjectLock::Taken, [](World& w) { return w.Edit()->RehearseCommit(0); }},
    {"CommitEdit", ObjectLock::Taken, [](World& w) { return w.Edit()->CommitEdit(0); }},
    {"EndEdit", ObjectLock::Taken, [](World& w) { return w.Edit()->EndEdit(); }},
};

/// Of a product or task: &World::product or &World::task, which has a section S with a setting N.
template <auto object>
constexpr MemberRow kSectionsMembers[] = {
    {"SectionNames", ObjectLock::Taken,
     [](World& w) { return SectionsOf(w.*object)->get_SectionNames(w.names.Slot()); }},
    {"GetSettingNames", ObjectLock::Taken,
     [](World& w) { return SectionsOf(w.*object)->GetSettingNames(w.section.Get(), w.names.Slot()); }},
    {"GetStoredSetting", ObjectLock::Taken,
     [](World& w) { return SectionsOf(w.*object)->GetStoredSetting(w.section.Get(), w.name.Get(), w.text.Slot()); }},
    {"TakenVersion", ObjectLock::Taken,
     [](World& w) { return SectionsOf(w.*object)->get_TakenVersion(w.text.Slot()); }},
};

constexpr MemberRow kProductMembers[] = {
    {"get SoftwareID", ObjectLock::Taken, [](World& w) { return w.product->get_SoftwareID(w.text.Slot()); }},
    {"put SoftwareID", ObjectLock::Taken, [](World& w) { return w.product->put_SoftwareID(w.a.Get()); }},
    {"get PolicyData", ObjectLock::Taken, [](World& w) { return w.product->get_PolicyData(w.text.Slot()); }},
    {"put Section", ObjectLock::NotTaken, [](World& w) { return w.product->put_Section(w.section.Get()); }},
    {"PutSetting", ObjectLock::Taken, [](World& w) { return w.product->PutSetting(w.name.Get(), w.a.Get()); }},
    {"GetSetting", ObjectLock::Taken, [](World& w) { return w.product->GetSetting(w.name.Get(), w.text.Slot()); }},
    {"GetSectionSetting", ObjectLock::Taken,
     [](World& w) { return w.product->GetSectionSetting(w.section.Get(), w.name.Get(), w.text.Slot()); }},
    {"PutSectionSetting", ObjectLock::NotTaken,
     [](World& w) { return w.product->PutSectionSetting(w.section.Get(), w.name.Get(), w.a.Get()); }},
    {"RemoveSetting", ObjectLock::Taken,
     [](World& w) { return w.product->RemoveSetting(w.section.Get(), w.name.Get()); }},
    {"RemoveSection", ObjectLock::Taken, [](World& w) { return w.product->RemoveSection(w.section.Get()); }},
};

constexpr MemberRow kTaskMembers[] = {
    {"get CreatorID", ObjectLock::Taken, [](World& w) { return w.task->get_CreatorID(w.text.Slot()); }},
    {"put CreatorID", ObjectLock::Taken, [](World& w) { return w.task->put_CreatorID(w.a.Get()); }},
    {"get SoftwareID", ObjectLock::Taken, [](World& w) { return w.task->get_SoftwareID(w.text.Slot()); }},
    {"put SoftwareID", ObjectLock::Taken, [](World& w) { return w.task->put_SoftwareID(w.a.Get()); }},
    {"get TaskID", ObjectLock::Taken, [](World& w) { return w.task->get_TaskID(w.text.Slot()); }},
    {"put TaskID", ObjectLock::Taken, [](World& w) { return w.task->put_TaskID(w.a.Get()); }},
    {"get DisplayName", ObjectLock::Taken, [](World& w) { return w.task->get_DisplayName(w.text.Slot()); }},
    {"put DisplayName", ObjectLock::Taken, [](World& w) { return w.task->put_DisplayName(w.a.Get()); }},
    {"get TaskType", ObjectLock::Taken, [](World& w) { return w.task->get_TaskType(w.text.Slot()); }},
    {"put TaskType", ObjectLock::Taken, [](World& w) { return w.task->put_TaskType(w.a.Get()); }},
    {"get PlatformsSupported", ObjectLock::Taken,
     [](World& w) { return w.task->get_PlatformsSupported(w.text.Slot()); }},
    {"put PlatformsSupported", ObjectLock::Taken, [](World& w) { return w.task->put_PlatformsSupported(w.a.Get()); }},
    {"get Priority", ObjectLock::Taken, [](World& w) { return w.task->get_Priority(w.number.Slot()); }},
    {"put Priority", ObjectLock::Taken, [](World& w) { return w.task->put_Priority(3); }},
    {"get TaskData", ObjectLock::Taken, [](World& w) { return w.task->get_TaskData(w.text.Slot()); }},
    {"put Section", ObjectLock::Taken, [](World& w) { return w.task->put_Section(w.section.Get()); }},
    {"PutSetting", ObjectLock::Taken, [](World& w) { return w.task->PutSetting(w.name.Get(), w.a.Get()); }},
    {"GetSetting", ObjectLock::Taken, [](World& w) { return w.task->GetSetting(w.name.Get(), w.text.Slot()); }},
    {"GetSectionSetting", ObjectLock::Taken,
     [](World& w) { return w.task->GetSectionSetting(w.section.Get(), w.name.Get(), w.text.Slot()); }},
    {"PutSectionSetting", ObjectLock::Taken,
     [](World& w) { return w.task->PutSectionSetting(w.section.Get(), w.name.Get(), w.a.Get()); }},
    {"WriteTaskDataToIniFile", ObjectLock::Taken, [](World& w) { return w.task->WriteTaskDataToIniFile(w.out.Get()); }},
    {"RemoveSetting", ObjectLock::Taken, [](World& w) { return w.task->RemoveSetting(w.section.Get(), w.name.Get()); }},
    {"RemoveSection", ObjectLock::Taken, [](World& w) { return w.task->RemoveSection(w.section.Get()); }},
    {"get Version", ObjectLock::Taken, [](World& w) { return w.task->get_Version(w.text.Slot()); }},
};

/// Calls every member of one class, all of which succeed, and expects of `lock` what its row says.
template <std::size_t count>
void ExpectLockUse(World& world, const MemberRow (&rows)[count], const CCriticalSection* lock)
{
    ASSERT_NE(lock, nullptr);
    for (const MemberRow& row : rows) {
        world.EmptySlots();
        const LockUse use;
        EXPECT_EQ(row.call(world), 0) << row.name;
        EXPECT_EQ(use.Entered(lock), row.lock == ObjectLock::Taken) << row.name;
        EXPECT_EQ(row.lock == ObjectLock::Taken ? EnteredOutside(use, lock) : 0, 0)
            << row.name << ": a lock inside the object's is entered without it";
        EXPECT_FALSE(IsHeld(lock)) << row.name << ": it is left";
    }
}

/// A file's lock: the first one that a certain member takes.
const CCriticalSection* LockOf(const World& world)
{
    OutText text;
    return OutermostOf([&] { EXPECT_EQ(world.file->WriteFileBuffer(text.Slot()), 0); });
}

}  // namespace

TEST(ObjectLocks, HaveARowForEveryMember)
{
    EXPECT_EQ(std::size(kFileMembers), PolicyFileInterface().members.size());
    EXPECT_EQ(std::size(kProductMembers), PolicyProductInterface().members.size());
    EXPECT_EQ(std::size(kTaskMembers), PolicyTaskInterface().members.size());
    EXPECT_EQ(std::size(kFileContentsMembers), PolicyFileContentsInterface().members.size());
    EXPECT_EQ(std::size(kFileEditMembers), PolicyFileEditInterface().members.size());
    EXPECT_EQ(std::size(kSectionsMembers<&World::product>), PolicySectionsInterface().members.size());
}

TEST(ObjectLocks, OfAPolicyFile_AreTakenByEverythingButPropertiesAndBlankObjects)
{
    World world;
    ExpectLockUse(world, kFileMembers, LockOf(world));
}

TEST(ObjectLocks, OfAProduct_AreTakenByEverythingButSectionAndPutSectionSetting)
{
    World world;
    ExpectLockUse(world, kProductMembers,
                  OutermostOf([&] { EXPECT_EQ(world.product->get_SoftwareID(world.text.Slot()), 0); }));
}

TEST(ObjectLocks, OfATask_AreTakenByEverything)
{
    World world;
    ExpectLockUse(world, kTaskMembers, OutermostOf([&] { EXPECT_EQ(world.task->get_TaskID(world.text.Slot()), 0); }));
}

TEST(ObjectLocks, AreTakenByEveryMemberOfTheOtherInterfaces)
{
    World world;
    ExpectLockUse(world, kFileContentsMembers, LockOf(world));
    ExpectLockUse(world, kFileEditMembers, LockOf(world));
    ASSERT_EQ(world.product->PutSectionSetting(world.section.Get(), world.name.Get(), world.a.Get()), 0);
    ASSERT_EQ(world.task->PutSectionSetting(world.section.Get(), world.name.Get(), world.a.Get()), 0);
    ExpectLockUse(world, kSectionsMembers<&World::product>,
                  OutermostOf([&] { EXPECT_EQ(world.product->get_SoftwareID(world.text.Slot()), 0); }));
    ExpectLockUse(world, kSectionsMembers<&World::task>,
                  OutermostOf([&] { EXPECT_EQ(world.task->get_TaskID(world.text.Slot()), 0); }));
}

TEST(ObjectLocks, PutSectionSettingOfAProduct_StillTakesTheLocksOfWhatItWrites)
{
    World world;
    const CCriticalSection* const object =
        OutermostOf([&] { EXPECT_EQ(world.product->get_SoftwareID(world.text.Slot()), 0); });
    const LockUse use;
    EXPECT_EQ(world.product->PutSectionSetting(world.section.Get(), world.name.Get(), world.a.Get()), 0);
    ASSERT_GE(use.Entries().size(), 2U) << "the private document's, and the cursor's inside it";
    EXPECT_TRUE(use.Entries()[0].held.empty());
    EXPECT_EQ(use.Entries()[1].held, std::vector{use.Entries()[0].section});
    EXPECT_FALSE(use.Entered(object));
}

TEST(ObjectLocks, OfAFile_AreHeldAcrossCallsIntoIncomingObjects)
{
    World world;
    const CCriticalSection* const lock = LockOf(world);
    int calls = 0;
    const auto look = [&] {
        EXPECT_TRUE(IsHeld(lock));
        ++calls;
    };
    ActingProduct product({0, u"A"}, {0, u"<X><Policy><Product SoftwareID='A'/></Policy></X>"});
    product.actions = {.onId = look, .onData = look};
    EXPECT_EQ(world.file->AddPolicy(&product, 1), 0);
    ActingTask task({0, u"A"}, {0, u"1"}, {0, u"<X><TaskGroup><Task/></TaskGroup></X>"});
    task.actions = {.onId = look, .onData = look};
    EXPECT_EQ(world.file->AddTask(&task, 1), 0);
    EXPECT_EQ(calls, 4);
    EXPECT_FALSE(IsHeld(lock));
}

TEST(ObjectLocks, OfAFile_AreLeftByCallsThatFail)
{
    World world;
    const CCriticalSection* const lock = LockOf(world);
    const auto look = [&] { EXPECT_TRUE(IsHeld(lock)); };
    ActingProduct product({0, u"\x01"}, {0, u"<"});
    product.actions = {.onId = look, .onData = look};
    EXPECT_EQ(world.file->AddPolicy(&product, 1), result::Unexpected);
    EXPECT_FALSE(IsHeld(lock)) << "an exception passed out of the operation";
    EXPECT_EQ(world.file->RemovePolicy(world.section.Get()), result::PolicyNotFound);
    EXPECT_EQ(world.file->WriteFile(nullptr, 0), result::InvalidName);
    EXPECT_FALSE(IsHeld(lock));
}

}  // namespace zupm::test
