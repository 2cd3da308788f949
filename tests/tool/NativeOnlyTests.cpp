// What Windows does not have: a device that is always full, arguments that are bytes, links and pipes to plant.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>

#include "ToolTest.h"
#include "file/LockFile.h"

namespace zupm::test {
namespace {

using nlohmann::json;
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

TEST_F(NativeTool, RefusesArgumentsThatAreNotUtf8)
{
    const struct {
        const char* value;
        const char* shown;
    } rows[] = {{"\xFF", R"(\xff)"},
                {"a\xC3", R"(a\xc3)"},
                {"\xC0\x80", R"(\xc0\x80)"},
                {"\xED\xA0\x80", R"(\xed\xa0\x80)"},
                {"\xF4\x90\x80\x80", R"(\xf4\x90\x80\x80)"},
                {"\xE2\x82", R"(\xe2\x82)"}};
    for (const auto& row : rows) {
        EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", row.value}),
                    Fails(2, std::string("zupolicy: an argument is not valid UTF-8: ") + row.shown + "\n"));
    }
}

TEST_F(NativeTool, Check_GoesOnAfterANameThatIsNotUtf8)
{
    std::filesystem::copy_file(Path("policy.xml"), Path("a\xFF.xml"));
    const ToolRun run = Tool({"check", "--verbose", "a\xFF.xml", "policy.xml"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.messages, MatchesPattern("a\\\\xff\\.xml: the name is not valid UTF-8\npolicy\\.xml: ok: .+\n"));
    const json reports = json::parse(Tool({"check", "--json", "a\xFF.xml", "policy.xml"}).out);
    EXPECT_EQ(reports[0], json::parse(R"({"file": "a\ufffd.xml", "ok": false, "line": null, "column": null,
        "message": "the name is not valid UTF-8"})"));
    EXPECT_EQ(reports[1]["ok"], true);
}

TEST_F(NativeTool, OtherCommands_NameAFileWhoseNameIsNotUtf8)
{
    const std::string message = "zupolicy: a\\xff.xml: the name is not valid UTF-8\n";
    EXPECT_THAT(Tool({"show", "a\xFF.xml"}), Fails(3, message));
    EXPECT_THAT(Tool({"get", "a\xFF.xml", "P", "S", "N"}), Fails(3, message));
}

TEST_F(NativeTool, NameOfAFile_ForgesNoLineAndMovesNoCursor)
{
    const std::string name = "x.xml: fine\ny\x1B[2J\xE2\x80\xAE.xml";
    const std::string shown = R"(x.xml: fine\ny\u001b[2J\u202e.xml)";
    EXPECT_THAT(Tool({"check", name}), Fails(3, shown + ": The file does not exist.\n"));
    EXPECT_THAT(Tool({"show", name}),
                Fails(3, "zupolicy: " + shown + ": The file does not exist. [FileNotFound, 0x80070002]\n"));
    std::filesystem::copy_file(Path("policy.xml"), Path(name.c_str()));
    EXPECT_THAT(Out({"show", name, "--names"}), testing::StartsWith("File             " + shown + "\n"));
    EXPECT_EQ(json::parse(Out({"show", name, "--json"}))["file"], name);
    std::filesystem::create_directory(Path("sub\n"));
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTB2000", "S", "N", "1", "--output", "none\n/x"}),
                Fails(3, HasSubstr("zupolicy: none\\n/x: ")));
}

TEST_F(NativeTool, AFullStandardOutput_IsAFailureForADocumentToo)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"},
                                {"set", "policy.xml", "PRODUCTB2000", "S", "N", "1", "--output", "-"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.messages, "zupolicy: standard output cannot be written\n");
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
