// A file that is held open to be replaced: what is opened, which links are followed, who can take the lock, and what
// happens when somebody else changes the name meanwhile.
#include "platform/HeldFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "platform/Files.h"
#include "platform/posix/SystemCalls.h"
#include "tests/platform/FaultySystem.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

using Names = std::vector<std::string>;

constexpr uid_t kNobody = 65534;
constexpr uid_t kSomebody = 4321;

std::function<void()> g_intrusion;

/// Runs `intrusion` once, right before the next renaming.
class BeforeRenaming {
public:
    explicit BeforeRenaming(std::function<void()> intrusion)
    {
        g_intrusion = std::move(intrusion);
        m_calls.fstatat = [](int folder, const char* path, struct stat* status, int flags) {
            if (const auto once = std::exchange(g_intrusion, {})) {
                once();
            }
            return native::kSystemCalls.fstatat(folder, path, status, flags);
        };
        native::ReplaceSystemCalls(&m_calls);
    }
    ~BeforeRenaming()
    {
        native::ReplaceSystemCalls(nullptr);
        g_intrusion = nullptr;
    }

private:
    native::SystemCalls m_calls = native::kSystemCalls;
};

class HeldFileTest : public testing::Test {
protected:
    HeldFileTest() { m_folder.Write("file", "old"); }

    [[nodiscard]] result::Code Open(std::string_view name) { return m_file.Open(m_folder.Wide(name)); }
    [[nodiscard]] std::string Held()
    {
        std::string bytes;
        EXPECT_EQ(m_file.Read(bytes), result::Success);
        return bytes;
    }
    void Link(const char* target, const char* name) const
    {
        ASSERT_EQ(::symlink(target, m_folder.Path(name).c_str()), 0);
    }

    TestFolder m_folder;
    HeldFile m_file;
};

TEST_F(HeldFileTest, OpenReadReplace_ChangesThatFileAlone)
{
    ASSERT_EQ(Open("file"), result::Success);
    ASSERT_EQ(m_file.TryLock(), result::Success);
    EXPECT_EQ(Held(), "old");
    const std::string expected = "old";
    EXPECT_EQ(m_file.CheckUnchanged(expected), result::Success);
    EXPECT_EQ(m_file.Replace("new", &expected), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "new");
    EXPECT_EQ(m_folder.Names(), Names{"file"});
}

TEST_F(HeldFileTest, Link_IsFollowedOnceAndStays)
{
    ASSERT_EQ(::mkdir(m_folder.Path("sub").c_str(), 0700), 0);
    Link("../file", "sub/inner");
    Link("sub/inner", "link");
    m_folder.Write("victim", "untouched");
    ASSERT_EQ(Open("link"), result::Success);
    const std::string expected = "old";
    ASSERT_EQ(::unlink(m_folder.Path("link").c_str()), 0);
    Link("victim", "link");
    EXPECT_EQ(m_file.CheckUnchanged(expected), result::Success);
    EXPECT_EQ(m_file.Replace("new", &expected), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "new");
    EXPECT_EQ(m_folder.Read("victim"), "untouched");
    EXPECT_TRUE(m_folder.IsLink("link"));
}

TEST_F(HeldFileTest, LinkMadeRightBeforeTheReplacement_IsLeftAlone)
{
    m_folder.Write("victim", "untouched");
    ASSERT_EQ(Open("file"), result::Success);
    const BeforeRenaming swap([&] {
        ASSERT_EQ(::unlink(m_folder.Path("file").c_str()), 0);
        Link("victim", "file");
    });
    const std::string expected = "old";
    EXPECT_EQ(m_file.Replace("new", &expected), result::FileChanged);
    EXPECT_EQ(m_folder.Read("victim"), "untouched");
    EXPECT_EQ(m_folder.Names(), (Names{"file", "victim"}));
}

TEST_F(HeldFileTest, FolderThatIsMovedAway_TakesTheReplacementWithIt)
{
    ASSERT_EQ(::mkdir(m_folder.Path("here").c_str(), 0700), 0);
    m_folder.Write("here/file", "old");
    ASSERT_EQ(Open("here/file"), result::Success);
    ASSERT_EQ(::rename(m_folder.Path("here").c_str(), m_folder.Path("there").c_str()), 0);
    ASSERT_EQ(::mkdir(m_folder.Path("here").c_str(), 0700), 0);
    m_folder.Write("here/file", "somebody else's");
    const std::string expected = "old";
    EXPECT_EQ(m_file.Replace("new", &expected), result::Success);
    EXPECT_EQ(m_folder.Read("there/file"), "new");
    EXPECT_EQ(m_folder.Read("here/file"), "somebody else's");
}

TEST_F(HeldFileTest, WhatIsNoFile_IsRefusedWithoutWaiting)
{
    ASSERT_EQ(::mkfifo(m_folder.Path("pipe").c_str(), 0600), 0);
    ASSERT_EQ(::mkdir(m_folder.Path("folder").c_str(), 0700), 0);
    Link("nowhere", "dangling");
    Link("loop", "loop");
    const struct {
        const char* name;
        result::Code code;
    } rows[] = {
        {"pipe", result::NotSupported},       {"folder", result::AccessDenied},    {"dangling", result::FileNotFound},
        {"loop", result::InvalidName},        {"folder/", result::AccessDenied},   {"missing", result::FileNotFound},
        {"file/below", result::PathNotFound}, {"missing/x", result::PathNotFound},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Open(row.name), row.code) << row.name;
        EXPECT_FALSE(m_file.IsOpen()) << row.name;
    }
    EXPECT_EQ(m_file.Open(u"/dev/null"), result::NotSupported);
}

TEST_F(HeldFileTest, FileOfTooManyBytes_IsRefusedBeforeItIsRead)
{
    ASSERT_EQ(::truncate(m_folder.Path("file").c_str(), off_t{30} << 30), 0);
    native::SystemCalls watched = native::kSystemCalls;
    watched.read = [](int, void*, std::size_t) -> ssize_t {
        ADD_FAILURE() << "a byte is read";
        return 0;
    };
    native::ReplaceSystemCalls(&watched);
    ASSERT_EQ(Open("file"), result::Success);
    std::string bytes = "x";
    EXPECT_EQ(m_file.Read(bytes), result::FileTooLarge);
    EXPECT_EQ(bytes, "");
    native::ReplaceSystemCalls(nullptr);
}

TEST_F(HeldFileTest, FileThatMayNotBeWritten_IsNotOpened)
{
    ASSERT_EQ(::chmod(m_folder.Path("file").c_str(), 0444), 0);
    EXPECT_EQ(RunWithoutRights([&] { return Open("file") == result::AccessDenied ? 0 : 1; }), 0);
}

TEST_F(HeldFileTest, Lock_ExcludesAnotherHandleOfTheSameProcessToo)
{
    HeldFile second;
    ASSERT_EQ(Open("file"), result::Success);
    ASSERT_EQ(second.Open(m_folder.Wide("file")), result::Success);
    EXPECT_EQ(m_file.TryLock(), result::Success);
    EXPECT_EQ(m_file.TryLock(), result::Success) << "the holder may ask again";
    EXPECT_EQ(second.TryLock(), result::FileLocked);
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(m_folder.Wide("file"), bytes), result::Success) << "closes another handle of the file";
    EXPECT_EQ(second.TryLock(), result::FileLocked);
    m_file.Close();
    EXPECT_EQ(second.TryLock(), result::Success);
}

TEST_F(HeldFileTest, LockOfAFileThatWasReplaced_IsNoLock)
{
    HeldFile second;
    ASSERT_EQ(Open("file"), result::Success);
    ASSERT_EQ(second.Open(m_folder.Wide("file")), result::Success);
    ASSERT_EQ(m_file.TryLock(), result::Success);
    EXPECT_EQ(m_file.Replace("new", nullptr), result::Success);
    m_file.Close();
    EXPECT_EQ(second.TryLock(), result::FileChanged);
}

TEST_F(HeldFileTest, Lock_LeavesNothingBesideTheFile)
{
    ASSERT_EQ(Open("file"), result::Success);
    ASSERT_EQ(m_file.TryLock(), result::Success);
    EXPECT_EQ(m_folder.Names(), Names{"file"});
    m_file.Close();
    EXPECT_EQ(m_folder.Names(), Names{"file"});
}

TEST_F(HeldFileTest, FileSystemWithoutLocks_IsNotSupported)
{
    ASSERT_EQ(Open("file"), result::Success);
    for (const int error : {ENOLCK, EOPNOTSUPP, ENOSYS}) {
        const FaultySystem system({.call = 0, .error = error, .forEver = false});
        EXPECT_EQ(m_file.TryLock(), result::NotSupported) << error;
    }
}

TEST_F(HeldFileTest, Rehearsal_LeavesNoTraceAndSeesWhatTheReplacementMeets)
{
    ASSERT_EQ(::mkdir(m_folder.Path("sub").c_str(), 0755), 0);
    m_folder.Write("sub/file", "old");
    ASSERT_EQ(::chmod(m_folder.Path("sub/file").c_str(), 0666), 0);
    ASSERT_EQ(Open("sub/file"), result::Success);
    EXPECT_EQ(m_file.RehearseReplace(), result::Success);
    EXPECT_EQ(m_folder.Names(), (Names{"file", "sub"}));
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    // The folder takes no new file of somebody else.
    EXPECT_EQ(RunWithoutRights([&] {
                  return Open("sub/file") == 0 && m_file.RehearseReplace() == result::AccessDenied &&
                                 m_file.Replace("new", nullptr) == result::AccessDenied
                             ? 0
                             : 1;
              }),
              0);
    // The owner could not be kept.
    ASSERT_EQ(::chmod(m_folder.Path("sub").c_str(), 0777), 0);
    EXPECT_EQ(RunWithoutRights([&] {
                  return Open("sub/file") == 0 && m_file.RehearseReplace() == result::OwnerNotKept &&
                                 m_file.Replace("new", nullptr) == result::OwnerNotKept
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_EQ(m_folder.Read("sub/file"), "old");
}

/// What the file system, or a kernel that does not know the flag, answers when asked for a nameless file.
class WithoutNamelessFiles : public HeldFileTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Errors, WithoutNamelessFiles, testing::Values(EOPNOTSUPP, EISDIR));

TEST_P(WithoutNamelessFiles, Rehearsal_AsksForTheRightToWrite)
{
    static constinit int refusal = 0;
    refusal = GetParam();
    ASSERT_EQ(Open("file"), result::Success);
    native::SystemCalls plain = native::kSystemCalls;
    plain.openat = [](int folder, const char* path, int flags, mode_t mode) {
        if ((flags & O_TMPFILE) == O_TMPFILE) {
            errno = refusal;
            return -1;
        }
        return native::kSystemCalls.openat(folder, path, flags, mode);
    };
    native::ReplaceSystemCalls(&plain);
    EXPECT_EQ(m_file.RehearseReplace(), result::Success);
    plain.faccessat = [](int, const char*, int, int) {
        errno = EACCES;
        return -1;
    };
    EXPECT_EQ(m_file.RehearseReplace(), result::AccessDenied);
    native::ReplaceSystemCalls(nullptr);
}

TEST_F(HeldFileTest, FolderThatCannotBeFlushed_IsReportedAsWritten)
{
    ASSERT_EQ(Open("file"), result::Success);
    native::SystemCalls odd = native::kSystemCalls;
    odd.fsync = [](int file) {
        struct stat status {};
        if (::fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
            errno = EIO;
            return -1;
        }
        return ::fsync(file);
    };
    native::ReplaceSystemCalls(&odd);
    EXPECT_EQ(m_file.Replace("new", nullptr), result::WrittenNotFlushed);
    native::ReplaceSystemCalls(nullptr);
    EXPECT_EQ(m_folder.Read("file"), "new");
}

TEST_F(HeldFileTest, EveryFailingCall_LeavesTheOldFileOrTheNewOneAndNoTemporary)
{
    const std::string expected = "old";
    for (const int error : {EIO, ENOSPC, EACCES, EMFILE, ENOMEM}) {
        std::string failedCall;
        for (int call = 0; call < 200; ++call) {
            m_folder.Write("file", "old");
            const std::size_t openBefore = OpenFileCount();
            result::Code code = result::Success;
            {
                const FaultySystem system({.call = call, .error = error, .forEver = false});
                code = Open("file");
                code = code == 0 ? m_file.TryLock() : code;
                std::string bytes;
                code = code == 0 ? m_file.Read(bytes) : code;
                code = code == 0 ? m_file.RehearseReplace() : code;
                code = code == 0 ? m_file.Replace("new", &expected) : code;
                m_file.Close();
                failedCall = system.FailedCall();
            }
            SCOPED_TRACE(failedCall + " " + std::to_string(call));
            EXPECT_EQ(OpenFileCount(), openBefore);
            const bool isNew = code == result::Success || code == result::WrittenNotFlushed;
            EXPECT_EQ(m_folder.Read("file"), isNew ? "new" : "old") << code;
            if (failedCall.empty()) {
                EXPECT_EQ(code, result::Success);
                EXPECT_GT(call, 15);
                break;
            }
            // Removing the temporary is the one call whose failure leaves it.
            EXPECT_TRUE(failedCall == "unlinkat" || m_folder.Names() == Names{"file"});
        }
        EXPECT_EQ(failedCall, "");
    }
}

/// A folder like /tmp, with somebody else's link to a file of ours.
class StickyFolder : public HeldFileTest {
protected:
    void SetUp() override
    {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "only root can give files away";
        }
        ASSERT_EQ(::mkdir(m_folder.Path("tmp").c_str(), 0777), 0);
        m_folder.Write("tmp/file", "old");
        Link("file", "tmp/link");
        Link("new", "tmp/dangling");
        Prepare(0, kSomebody, 01777);
    }
    void Prepare(uid_t folder, uid_t link, mode_t mode) const
    {
        ASSERT_EQ(::chown(m_folder.Path("tmp").c_str(), folder, folder), 0);
        ASSERT_EQ(::chmod(m_folder.Path("tmp").c_str(), mode), 0);
        ASSERT_EQ(::lchown(m_folder.Path("tmp/link").c_str(), link, link), 0);
        ASSERT_EQ(::lchown(m_folder.Path("tmp/dangling").c_str(), link, link), 0);
    }
};

TEST_F(StickyFolder, SomebodyElsesLink_IsNotFollowed)
{
    EXPECT_EQ(Open("tmp/link"), result::AccessDenied);
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("tmp/link"), "new"), result::AccessDenied);
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("tmp/dangling"), "new"), result::AccessDenied);
    EXPECT_EQ(m_folder.Read("tmp/file"), "old");
    EXPECT_EQ(m_folder.Names(), (Names{"file", "tmp"}));
}

TEST_F(StickyFolder, LinkOfTheCallerOrOfTheFoldersOwner_IsFollowed)
{
    Prepare(kSomebody, 0, 01777);
    EXPECT_EQ(Open("tmp/link"), result::Success) << "the caller's";
    Prepare(kSomebody, kSomebody, 01777);
    EXPECT_EQ(Open("tmp/link"), result::Success) << "the folder's owner's";
    EXPECT_EQ(ReplaceFileAtomically(m_folder.Wide("tmp/dangling"), "new"), result::Success);
    EXPECT_EQ(m_folder.Read("tmp/new"), "new");
}

TEST_F(StickyFolder, FolderThatIsNotOpenToAllOrNotSticky_HasNoRule)
{
    Prepare(0, kNobody, 01755);
    EXPECT_EQ(Open("tmp/link"), result::Success);
    Prepare(0, kNobody, 0777);
    EXPECT_EQ(Open("tmp/link"), result::Success);
}

}  // namespace
}  // namespace zupm::test
