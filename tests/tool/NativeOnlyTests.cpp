// What Windows does not have: a device that is always full, arguments that are bytes, links and pipes to plant.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "ToolTest.h"
#include "file/LockFile.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;
using tool::LockFile;

class NativeTool : public ToolTest {
protected:
    [[nodiscard]] std::string Path(const char* name) const { return (Folder().Folder() / name).string(); }

    [[nodiscard]] ToolRun Set(const char* file = "policy.xml") const
    {
        return Tool({"set", file, "PRODUCTB2000", "General", "LogLevel", "5", "--lock-timeout", "0"});
    }
};

TEST_F(NativeTool, AFullStandardOutputIsAFailure)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"}, {"show", "policy.xml"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.messages, "zupolicy: standard output cannot be written\n");
}

TEST_F(NativeTool, AnExportToAFullStandardOutputIsAFailure)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"},
                                {"export-ini", "policy.xml", "PRODUCTB2000", "-", "--task", "{task-1}"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.messages, "zupolicy: standard output cannot be written\n");
}

TEST_F(NativeTool, AnExportToADevicePipeOrOpenFileIsRefused)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    // Links of the test's own: a tool that did replace what they lead to would harm nothing outside its folder.
    ASSERT_EQ(symlink("/proc/self/fd/1", Path("stdout").c_str()), 0);
    ASSERT_EQ(symlink("stdout", Path("link").c_str()), 0);
    ASSERT_EQ(symlink("/dev/null", Path("null").c_str()), 0);
    for (const std::string name : {"/proc/self/fd/1", "stdout", "link", "null", "pipe"}) {
        for (const std::string& target : {Path("out.txt"), std::string("/dev/null")}) {
            const ToolRun run = RunTool({Folder().Folder(), target},
                                        {"export-ini", "policy.xml", "PRODUCTB2000", name, "--task", "{task-1}"});
            EXPECT_EQ(run.exitCode, 3) << name << " " << target;
            EXPECT_EQ(run.messages, "zupolicy: " + name + ": not a regular file; `-` writes to the standard output\n");
        }
    }
    EXPECT_EQ(Bytes(u"out.txt"), "");
}

TEST_F(NativeTool, AnExportFollowsALinkToAnOrdinaryFile)
{
    (void)Folder().Write(u"real.ini", "[A]\r\nx=1\r\n");
    ASSERT_EQ(symlink("real.ini", Path("link.ini").c_str()), 0);
    EXPECT_EQ(Out({"export-ini", "policy.xml", "PRODUCTB2000", "link.ini", "--task", "{task-1}"}), "");
    EXPECT_THAT(Bytes(u"real.ini"), testing::StartsWith("[A]\r\nx=1\r\n[Task]\r\n"));
}

TEST_F(NativeTool, AnExportToStandardOutputLeavesNothingAmongTheTemporaryFiles)
{
    std::filesystem::create_directory(Path("tmp"));
    ASSERT_EQ(setenv("TMPDIR", Path("tmp").c_str(), 1), 0);
    const ToolRun run = Tool({"export-ini", "policy.xml", "PRODUCTB2000", "-", "--task", "{task-1}"});
    EXPECT_TRUE(std::filesystem::is_empty(Path("tmp")));
    std::filesystem::remove(Path("tmp"));
    const ToolRun failed = Tool({"export-ini", "policy.xml", "PRODUCTB2000", "-", "--task", "{task-1}"});
    ASSERT_EQ(unsetenv("TMPDIR"), 0);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(failed, Fails(3, HasSubstr("a temporary file cannot be used: ")));
}

TEST_F(NativeTool, RefusesArgumentsThatAreNotUtf8)
{
    const char* const values[] = {"\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"};
    for (const char* value : values) {
        EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", value}),
                    Fails(2, "zupolicy: an argument is not valid UTF-8\n"));
    }
}

TEST_F(NativeTool, NamesTheProcessThatHasTheLock)
{
    LockFile other(Path("policy.xml.lock"), Path("policy.xml"));
    ASSERT_TRUE(other.TryLock());
    EXPECT_THAT(Set(), Fails(6, HasSubstr("process " + std::to_string(getpid()) + " is editing it")));
}

TEST_F(NativeTool, LockOfAProcessThatWasKilled_IsFree)
{
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        LockFile lock(Path("policy.xml.lock"), Path("policy.xml"));
        const bool isLocked = lock.TryLock();
        if (write(ready[1], isLocked ? "1" : "0", 1) == 1) {
            pause();
        }
        _exit(1);
    }
    char isLocked = '0';
    ASSERT_EQ(read(ready[0], &isLocked, 1), 1);
    EXPECT_EQ(isLocked, '1');
    EXPECT_EQ(Set().exitCode, 6);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(Set().exitCode, 0);
    close(ready[0]);
    close(ready[1]);
}

TEST_F(NativeTool, LinkToTheFile_HasTheFilesLock)
{
    ASSERT_EQ(symlink("policy.xml", Path("link.xml").c_str()), 0);
    LockFile other(Path("policy.xml.lock"), Path("policy.xml"));
    ASSERT_TRUE(other.TryLock());
    EXPECT_EQ(Set("link.xml").exitCode, 6);
    EXPECT_FALSE(Folder().Has(u"link.xml.lock"));
}

TEST_F(NativeTool, PlantedLockFile_IsNeitherFollowedNorWaitedFor)
{
    (void)Folder().Write(u"victim", "precious");
    ASSERT_EQ(chmod(Path("victim").c_str(), 0644), 0);
    ASSERT_EQ(symlink("victim", Path("policy.xml.lock").c_str()), 0);
    EXPECT_THAT(Set(), Fails(3, HasSubstr("policy.xml.lock cannot be used: ")));
    ASSERT_EQ(unlink(Path("policy.xml.lock").c_str()), 0);
    ASSERT_EQ(mkfifo(Path("policy.xml.lock").c_str(), 0600), 0);
    EXPECT_THAT(Set(), Fails(3, HasSubstr("policy.xml.lock cannot be used: ")));
    ASSERT_EQ(unlink(Path("policy.xml.lock").c_str()), 0);
    ASSERT_EQ(link(Path("victim").c_str(), Path("policy.xml.lock").c_str()), 0);
    EXPECT_EQ(Set().exitCode, 0);
    EXPECT_EQ(Bytes(u"victim"), "precious");
    struct stat status {};
    ASSERT_EQ(stat(Path("victim").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644u);
}

TEST_F(NativeTool, NewLockFile_IsForThoseWhoMayWriteTheFile)
{
    const struct {
        mode_t file;
        mode_t lock;
    } rows[] = {{0600, 0600}, {0644, 0600}, {0664, 0660}, {0666, 0666}};
    for (const auto& row : rows) {
        unlink(Path("policy.xml.lock").c_str());
        ASSERT_EQ(chmod(Path("policy.xml").c_str(), row.file), 0);
        EXPECT_EQ(Tool({"set", "policy.xml", "PRODUCTB2000", "S", "N", std::to_string(row.file)}).exitCode, 0);
        struct stat status {};
        ASSERT_EQ(stat(Path("policy.xml.lock").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, row.lock);
    }
}

TEST_F(NativeTool, Device_IsWrittenWithoutALock)
{
    const ToolRun run = Tool({"set", "policy.xml", "PRODUCTB2000", "S", "N", "1", "--output", "/dev/null"});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_FALSE(std::filesystem::exists("/dev/null.lock"));
}

}  // namespace
}  // namespace zupm::test
