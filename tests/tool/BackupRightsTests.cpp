// Backups and rights: a backup lets nobody in who may not read the file, and needs no right to list the folder.
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>

#include "ToolTest.h"

namespace zupm::test {
namespace {

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr const char* kDefaultList = "system.posix_acl_default";
/// rw for the owner, user 12 and the mask, r for the group, nothing for others.
constexpr unsigned char kList[] = {2,  0, 0, 0,                      //
                                   1,  0, 6, 0, 255, 255, 255, 255,  //
                                   2,  0, 6, 0, 12,  0,   0,   0,    //
                                   4,  0, 4, 0, 255, 255, 255, 255,  //
                                   16, 0, 6, 0, 255, 255, 255, 255,  //
                                   32, 0, 0, 0, 255, 255, 255, 255};

class BackupRights : public ToolTest {
protected:
    void SetUp() override
    {
        ASSERT_EQ(chmod(Path("policy.xml").c_str(), 0640), 0);
        if (setxattr(Folder().Folder().c_str(), kDefaultList, kList, sizeof(kList), 0) != 0) {
            GTEST_SKIP() << "the file system has no access lists";
        }
    }

    [[nodiscard]] std::string Path(const char* name) const { return (Folder().Folder() / name).string(); }
    /// The access list of a file; nothing when it has none.
    [[nodiscard]] std::optional<std::string> ListOf(const char* name) const
    {
        std::string list(1024, '\0');
        const ssize_t size = getxattr(Path(name).c_str(), kAccessList, list.data(), list.size());
        list.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
        return size < 0 ? std::nullopt : std::optional(list);
    }
    void MakeBackup() const
    {
        EXPECT_EQ(Out({"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "7", "--backup"}), "");
        struct stat status {};
        ASSERT_EQ(stat(Path("policy.xml.bak").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0640U);
    }
};

TEST_F(BackupRights, TheFoldersDefaultList_IsNotGivenToTheBackup)
{
    ASSERT_EQ(ListOf("policy.xml"), std::nullopt);
    MakeBackup();
    EXPECT_EQ(ListOf("policy.xml.bak"), std::nullopt);
}

TEST_F(BackupRights, TheListOfTheFile_IsThatOfTheBackup)
{
    // Only the owner and user 13.
    std::string list(reinterpret_cast<const char*>(kList), sizeof(kList));
    list[16] = 13;
    list[22] = 0;
    ASSERT_EQ(setxattr(Path("policy.xml").c_str(), kAccessList, list.data(), list.size(), 0), 0);
    ASSERT_EQ(chmod(Path("policy.xml").c_str(), 0640), 0);
    const std::optional<std::string> before = ListOf("policy.xml");
    ASSERT_NE(before, std::nullopt);
    MakeBackup();
    EXPECT_EQ(ListOf("policy.xml.bak"), before);
}

class UnreadableFolder : public ToolTest {
protected:
    /// Runs the tool as somebody who may write into the folder and use its files, and not list it; the exit code.
    [[nodiscard]] int Run(const std::string& arguments) const
    {
        const bool isRoot = geteuid() == 0;
        const std::string owner = isRoot ? "chown -h 65534:65534 policy.xml* && " : "";
        const std::string run = isRoot ? "setpriv --reuid 65534 --regid 65534 --clear-groups " : "";
        const int status =
            std::system(("cd '" + Folder().Folder().string() + "' && " + owner + "chmod 333 . && " + run +
                         "'" ZUPM_TOOL "' " + arguments + " 2> /dev/null; code=$?; chmod 700 .; exit $code")
                            .c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(UnreadableFolder, ABackupThere_TakesANameThatIsFree)
{
    if (geteuid() == 0 && std::system("command -v setpriv > /dev/null") != 0) {
        GTEST_SKIP() << "nothing restricts this user";
    }
    const std::string before = Bytes();
    Folder().Write(u"policy.xml.bak", "a backup");
    std::filesystem::create_symlink("nowhere", Folder().Folder() / "policy.xml.bak.1");
    ASSERT_EQ(Run("set policy.xml PRODUCTA1000 General Enabled 7 --backup"), 0);
    EXPECT_EQ(Bytes(u"policy.xml.bak"), "a backup");
    EXPECT_TRUE(std::filesystem::is_symlink(Folder().Folder() / "policy.xml.bak.1"));
    EXPECT_FALSE(Folder().Has(u"nowhere"));
    EXPECT_EQ(Bytes(u"policy.xml.bak.2"), before);
}

}  // namespace
}  // namespace zupm::test
