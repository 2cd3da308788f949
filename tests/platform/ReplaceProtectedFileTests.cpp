// Files with a special protection: groups, the sticky bit, attributes of the file system, mounts.
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Files.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

constexpr uid_t kNobody = 65534;
constexpr gid_t kGroup = 4321;

class ReplaceProtected : public testing::Test {
protected:
    ReplaceProtected() { m_folder.Write("file", "old"); }

    void SetUp() override
    {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "only root can prepare these files";
        }
    }

    void Give(uid_t user, gid_t group, mode_t mode) const
    {
        ASSERT_EQ(::chown(m_folder.Path("file").c_str(), user, group), 0);
        ASSERT_EQ(::chmod(m_folder.Path("file").c_str(), mode), 0);
    }

    [[nodiscard]] result::Code Write() const { return ReplaceFileAtomically(m_folder.Wide("file"), "new"); }

    /// Whether a process without rights, which is also in that group, gets `expected`.
    [[nodiscard]] bool GivesWithoutRights(result::Code expected, gid_t group = kNobody) const
    {
        const gid_t root = 0;
        EXPECT_EQ(::setgroups(1, &group), 0);
        const int differs = RunWithoutRights([&] { return Write() == expected ? 0 : 1; });
        EXPECT_EQ(::setgroups(1, &root), 0);
        return differs == 0;
    }

    void ExpectOldFileAlone() const
    {
        EXPECT_EQ(m_folder.Read("file"), "old");
        EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
    }

    TestFolder m_folder;
};

TEST_F(ReplaceProtected, OwnFileOfAGroupOfTheUser_KeepsItsGroup)
{
    Give(kNobody, kGroup, 02664);
    EXPECT_TRUE(GivesWithoutRights(result::Success, kGroup));
    struct stat status {};
    ASSERT_EQ(::stat(m_folder.Path("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, kGroup);
    EXPECT_EQ(status.st_mode & 07777, mode_t{02664});
    EXPECT_EQ(m_folder.Read("file"), "new");
}

TEST_F(ReplaceProtected, OwnFileOfAGroupThatTheUserIsNotIn_IsRefusedBecauseItCannotBeKept)
{
    Give(kNobody, kGroup, 0664);
    EXPECT_TRUE(GivesWithoutRights(result::AccessDenied));
    ExpectOldFileAlone();
}

TEST_F(ReplaceProtected, OwnFileInAStickyFolder_IsReplaced)
{
    ASSERT_EQ(::chmod(m_folder.Path("").c_str(), 01777), 0);
    Give(kNobody, kNobody, 0600);
    EXPECT_TRUE(GivesWithoutRights(result::Success));
    EXPECT_EQ(m_folder.Read("file"), "new");
}

TEST_F(ReplaceProtected, SomebodyElsesFileInAStickyFolder_IsRefused)
{
    ASSERT_EQ(::chmod(m_folder.Path("").c_str(), 01777), 0);
    Give(0, 0, 0666);
    EXPECT_TRUE(GivesWithoutRights(result::AccessDenied));
    ExpectOldFileAlone();
}

TEST_F(ReplaceProtected, AsRoot_AFileThatNobodyMayWriteIsReplacedAndStaysSo)
{
    Give(kNobody, kGroup, 0444);
    EXPECT_EQ(Write(), result::Success);
    EXPECT_EQ(m_folder.Read("file"), "new");
    EXPECT_EQ(m_folder.Mode("file"), mode_t{0444});
}

TEST_F(ReplaceProtected, FileThatTheFileSystemKeepsFromChanging_IsRefusedEvenForRoot)
{
    for (const int flag : {FS_IMMUTABLE_FL, FS_APPEND_FL}) {
        const int file = ::open(m_folder.Path("file").c_str(), O_RDONLY);
        int none = 0;
        if (::ioctl(file, FS_IOC_GETFLAGS, &none) != 0) {
            ::close(file);
            GTEST_SKIP() << "the file system has no such attributes";
        }
        const int kept = none | flag;
        ASSERT_EQ(::ioctl(file, FS_IOC_SETFLAGS, &kept), 0);
        EXPECT_EQ(Write(), result::AccessDenied) << flag;
        ASSERT_EQ(::ioctl(file, FS_IOC_SETFLAGS, &none), 0);
        ::close(file);
        ExpectOldFileAlone();
    }
}

TEST_F(ReplaceProtected, FileThatIsAMountPoint_IsRefusedBecauseItCannotBeRenamedOver)
{
    constexpr int kNoMounts = 77;
    m_folder.Write("source", "old");
    const std::string source = m_folder.Path("source");
    const std::string target = m_folder.Path("file");
    const pid_t child = ::fork();
    if (child == 0) {
        if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0) {
            ::_exit(kNoMounts);
        }
        ::_exit(Write() == result::SharingViolation ? 0 : 1);
    }
    const int outcome = WaitForChild(child);
    if (outcome == kNoMounts) {
        GTEST_SKIP() << "no mounts here";
    }
    EXPECT_EQ(outcome, 0);
    EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"file", "source"}));
    EXPECT_EQ(m_folder.Read("source"), "old");
}

}  // namespace
}  // namespace zupm::test
