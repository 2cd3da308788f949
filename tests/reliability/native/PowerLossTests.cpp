// Power that fails between any two system calls of a writer, and after the last, with everything lost that may be lost.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <iostream>

#include "RecordedCalls.h"
#include "common/PrivateProfile.h"
#include "comrt/RegistryStore.h"
#include "platform/Files.h"
#include "platform/posix/DirectWrite.h"
#include "platform/posix/FileHandle.h"
#include "tests/platform/TestFolder.h"
#include "tests/support/PolicyFileClient.h"

namespace zupm::test {
namespace {

using native::Calls;
using native::FileHandle;
using native::OpenBelow;
using Path = std::vector<std::string>;

const FileState kOld{"the old bytes", 0640};
const FileState kNew{"the new bytes, which are more", 0640};

class PowerLoss : public testing::Test {
protected:
    void WriteOld(std::string_view name) const
    {
        m_folder.Write(name, kOld.bytes);
        ASSERT_EQ(::chmod(m_folder.Path(name).c_str(), kOld.mode), 0);
    }

    /// What may be found after no call of `operation`, one call, ... all calls.
    [[nodiscard]] std::vector<FoundStates> Losses(const Path& path, const std::function<void()>& operation) const
    {
        const RecordedCalls recording(m_folder.Path("."));
        operation();
        std::vector<FoundStates> losses = recording.Losses(path);
        std::size_t states = 0;
        for (const FoundStates& found : losses) {
            states += found.size();
        }
        std::cout << "power lost at " << losses.size() << " moments of " << recording.Calls().size()
                  << " recorded calls: " << states << " states\n";
        return losses;
    }

    [[nodiscard]] std::vector<FoundStates> LossesOfReplacing(std::string_view name, const Path& path) const
    {
        return Losses(path, [&] { EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide(name), kNew.bytes), 0); });
    }

    TestFolder m_folder;
};

/// Whether nothing else than `allowed` may be found at any moment.
bool IsConsistent(const std::vector<FoundStates>& losses, const FoundStates& allowed)
{
    return std::ranges::all_of(losses, [&](const FoundStates& found) { return std::ranges::includes(allowed, found); });
}

TEST_F(PowerLoss, WhileAFileIsReplaced_LeavesTheOldOrTheNewAndAfterwardsTheNew)
{
    WriteOld("file");
    const auto losses = LossesOfReplacing("file", {"file"});
    EXPECT_GT(losses.size(), 5U) << "hardly any calls were recorded";
    EXPECT_TRUE(IsConsistent(losses, {kOld, kNew}));
    EXPECT_EQ(losses.front(), FoundStates{kOld});
    EXPECT_EQ(losses.back(), FoundStates{kNew});
}

TEST_F(PowerLoss, WhileAFileIsCreated_LeavesNoneOrTheWholeAndAfterwardsTheWhole)
{
    const mode_t umask = ::umask(0026);
    const auto losses = LossesOfReplacing("file", {"file"});
    ::umask(umask);
    EXPECT_TRUE(IsConsistent(losses, {std::nullopt, kNew}));
    EXPECT_EQ(losses.back(), FoundStates{kNew});
}

TEST_F(PowerLoss, WhileAFileIsReplacedThroughALink_LeavesTheOldOrTheNewAndAfterwardsTheNew)
{
    ASSERT_EQ(::mkdir(m_folder.Path("folder").c_str(), 0700), 0);
    WriteOld("folder/file");
    ASSERT_EQ(::symlink("folder/file", m_folder.Path("link").c_str()), 0);
    const auto losses = LossesOfReplacing("link", {"folder", "file"});
    EXPECT_TRUE(IsConsistent(losses, {kOld, kNew}));
    EXPECT_EQ(losses.back(), FoundStates{kNew});
}

TEST_F(PowerLoss, DuringWriteFile_LeavesTheOldOrTheNewPolicyFileAndAfterwardsTheNew)
{
    const std::string old = "<R><PolicyRoot version='1'><PolicyGroup><Policy/></PolicyGroup></PolicyRoot></R>";
    m_folder.Write("policy.xml", old);
    const mode_t mode = m_folder.Mode("policy.xml");
    PolicyFileClient file;
    ASSERT_EQ(file.Load(m_folder.Wide("policy.xml")), 0);
    ProductClient product = file.NewPolicy(u"A");
    ASSERT_EQ(product.Put(u"S", u"N", std::u16string(200'000, u'x')), 0);
    ASSERT_EQ(file.Add(product), 0);

    const auto losses = Losses({"policy.xml"}, [&] { EXPECT_EQ(file.Write(m_folder.Wide("policy.xml")), 0); });
    const FileState written{m_folder.Read("policy.xml"), mode};
    EXPECT_GT(written.bytes.size(), 200'000U);
    EXPECT_TRUE(IsConsistent(losses, {FileState{old, mode}, written}));
    EXPECT_EQ(losses.back(), FoundStates{written});
}

TEST_F(PowerLoss, WhileAnIniFileIsWritten_LeavesTheFileAfterOneOfTheSettings)
{
    WriteOld("file");
    const std::string one = kOld.bytes + "\r\n[S]\r\na=1\r\n";
    const auto losses = Losses({"file"}, [&] {
        EXPECT_TRUE(WritePrivateProfileStringW(u"S", u"a", u"1", m_folder.Wide("file")));
        EXPECT_TRUE(WritePrivateProfileStringW(u"S", u"b", u"2", m_folder.Wide("file")));
    });
    EXPECT_GT(losses.size(), 5U);
    EXPECT_TRUE(IsConsistent(losses, {kOld, FileState{one, kOld.mode}, FileState{one + "b=2\r\n", kOld.mode}}));
}

TEST_F(PowerLoss, AfterARegistryChange_LeavesTheChangeAndItsFolders)
{
    const Path path = {"new", "folder", "registry"};
    const runtime::RegistryStore store(m_folder.Wide("new/folder/registry"));
    const auto created = Losses(path, [&] { EXPECT_EQ(store.SetValue("Key", "Name", "1"), 0); });
    const FileState first{m_folder.Read("new/folder/registry"), m_folder.Mode("new/folder/registry")};
    EXPECT_TRUE(IsConsistent(created, {std::nullopt, first}));
    EXPECT_EQ(created.back(), FoundStates{first});

    const auto changed = Losses(path, [&] { EXPECT_EQ(store.SetValue("Key", "Name", "2"), 0); });
    const FileState second{m_folder.Read("new/folder/registry"), first.mode};
    EXPECT_NE(second, first);
    EXPECT_TRUE(IsConsistent(changed, {first, second}));
    EXPECT_EQ(changed.back(), FoundStates{second});
}

/// A way of writing that somebody could take for good enough, and whether it is.
struct CarelessWriter {
    const char* label;
    void (*write)(const FileHandle& folder);
    bool isConsistent;
    bool isDurable;
};

FileHandle OpenNew(const FileHandle& folder, const char* name, int flags)
{
    FileHandle file = OpenBelow(folder.Get(), name, O_WRONLY | flags, kNew.mode);
    EXPECT_TRUE(file);
    EXPECT_EQ(native::WriteAll(file.Get(), kNew.bytes), 0);
    return file;
}

void Rename(const FileHandle& folder)
{
    EXPECT_EQ(Calls().renameat(folder.Get(), "temporary", folder.Get(), "file"), 0);
}

const CarelessWriter kCarelessWriters[] = {
    {"overwrites and flushes", [](const FileHandle& folder) { Calls().fsync(OpenNew(folder, "file", O_TRUNC).Get()); },
     false, true},
    {"renames, flushes nothing",
     [](const FileHandle& folder) {
         OpenNew(folder, "temporary", O_CREAT | O_EXCL);
         Rename(folder);
     },
     false, false},
    {"renames, flushes the folder alone",
     [](const FileHandle& folder) {
         OpenNew(folder, "temporary", O_CREAT | O_EXCL);
         Rename(folder);
         Calls().fsync(folder.Get());
     },
     false, false},
    {"renames, flushes the file too late",
     [](const FileHandle& folder) {
         const FileHandle file = OpenNew(folder, "temporary", O_CREAT | O_EXCL);
         Rename(folder);
         Calls().fsync(file.Get());
         Calls().fsync(folder.Get());
     },
     false, true},
    {"flushes and renames, does not flush the folder",
     [](const FileHandle& folder) {
         Calls().fsync(OpenNew(folder, "temporary", O_CREAT | O_EXCL).Get());
         Rename(folder);
     },
     true, false},
    {"removes the old file first",
     [](const FileHandle& folder) {
         Calls().fsync(OpenNew(folder, "temporary", O_CREAT | O_EXCL).Get());
         Calls().unlinkat(folder.Get(), "file", 0);
         Rename(folder);
         Calls().fsync(folder.Get());
     },
     false, true},
    {"does everything in order",
     [](const FileHandle& folder) {
         Calls().fsync(OpenNew(folder, "temporary", O_CREAT | O_EXCL).Get());
         Rename(folder);
         Calls().fsync(folder.Get());
     },
     true, true},
};

TEST_F(PowerLoss, TheCarelessnessOfAWriter_IsNoticed)
{
    const mode_t umask = ::umask(0);
    for (const CarelessWriter& row : kCarelessWriters) {
        WriteOld("file");
        const FileHandle folder = OpenBelow(AT_FDCWD, m_folder.Path(".").c_str(), O_RDONLY | O_DIRECTORY);
        const auto losses = Losses({"file"}, [&] { row.write(folder); });
        EXPECT_EQ(IsConsistent(losses, {kOld, kNew}), row.isConsistent) << row.label;
        EXPECT_EQ(losses.back() == FoundStates{kNew}, row.isDurable) << row.label;
        ::unlink(m_folder.Path("file").c_str());
    }
    ::umask(umask);
}

}  // namespace
}  // namespace zupm::test
