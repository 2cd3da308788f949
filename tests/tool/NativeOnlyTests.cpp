// What Windows does not have: a device that is always full, arguments that are bytes, links and pipes to plant.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <thread>

#include "ToolTest.h"
#include "platform/HeldFile.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class NativeTool : public ToolTest {
protected:
    [[nodiscard]] std::string Path(const char* name) const { return (Folder().Folder() / name).string(); }

    [[nodiscard]] ToolRun Set(const char* file = "policy.xml") const
    {
        return Tool({"set", file, "PRODUCTB2000", "General", "LogLevel", "5", "--lock-timeout", "0"});
    }

    /// Runs the tool without the rights of root; its exit code.
    [[nodiscard]] int RunAsNobody(const std::vector<std::string>& arguments) const
    {
        constexpr uid_t kNobody = 65534;
        const pid_t child = fork();
        if (child == 0) {
            const bool isReady = chdir(Folder().Folder().c_str()) == 0 && setgid(kNobody) == 0 && setuid(kNobody) == 0;
            std::vector<const char*> texts = {ZUPM_TOOL};
            for (const std::string& argument : arguments) {
                texts.push_back(argument.c_str());
            }
            texts.push_back(nullptr);
            if (isReady) {
                execv(ZUPM_TOOL, const_cast<char* const*>(texts.data()));
            }
            _exit(127);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

/// The exit code of a shell command.
int Shell(const std::string& command)
{
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(NativeTool, AFullStandardOutputIsAFailure)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"}, {"show", "policy.xml"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.messages, "zupolicy: writing to standard output failed\n");
}

TEST_F(NativeTool, AnExportToAFullStandardOutputIsAFailure)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"},
                                {"export-ini", "policy.xml", "PRODUCTB2000", "-", "--task", "{task-1}"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.messages, "zupolicy: writing to standard output failed\n");
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
            EXPECT_EQ(run.messages, "zupolicy: " + name + ": not a regular file; use - for standard output\n");
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
    EXPECT_THAT(
        Tool({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "secret\xFF", "--redact", "LogLevel"}),
        Fails(2, "zupolicy: a value is not valid UTF-8\n"));
    EXPECT_THAT(Tool({"report", "policy.xml", "--title", "a\xFF", "-o", "page.html", "--json"}),
                Fails(2, "zupolicy: an argument is not valid UTF-8: a\\xff\n"));
    EXPECT_FALSE(Folder().Has(u"page.html"));
}

TEST_F(NativeTool, Check_GoesOnAfterANameThatIsNotUtf8)
{
    std::filesystem::copy_file(Path("policy.xml"), Path("a\xFF.xml"));
    const ToolRun run = Tool({"check", "--verbose", "a\xFF.xml", "policy.xml"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.messages, MatchesPattern("a\\\\xff\\.xml: the name is not valid UTF-8\npolicy\\.xml: ok: .+\n"));
    const json reports = json::parse(Tool({"check", "--json", "a\xFF.xml", "policy.xml"}).out)["files"];
    EXPECT_EQ(reports[0], json::parse(R"({"file": "a\ufffd.xml", "ok": false, "line": null, "column": null,
        "message": "the name is not valid UTF-8"})"));
    EXPECT_EQ(reports[1]["ok"], true);
}

TEST_F(NativeTool, OtherCommands_NameAFileWhoseNameIsNotUtf8)
{
    const std::string message = "zupolicy: a\\xff.xml: the name is not valid UTF-8\n";
    EXPECT_THAT(Tool({"show", "a\xFF.xml"}), Fails(3, message));
    EXPECT_THAT(Tool({"get", "a\xFF.xml", "P", "S", "N"}), Fails(3, message));
    const ToolRun diff = Tool({"diff", "policy.xml", "a\xFF.xml", "--json"});
    EXPECT_EQ(diff.exitCode, 3);
    EXPECT_EQ(diff.messages, "zupolicy: a\\xff.xml: the file name is not valid UTF-8\n");
    EXPECT_EQ(json::parse(diff.out)["error"]["file"], "a\xEF\xBF\xBD.xml");
    EXPECT_THAT(Tool({"watch", "a\xFF.xml"}), Fails(3, message));
}

TEST_F(NativeTool, NameOfAFile_CannotForgeALineOrMoveTheCursor)
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
    EXPECT_EQ(run.messages, "zupolicy: writing to standard output failed\n");
}

TEST_F(NativeTool, ExportIni_ThatIsWrittenAndCannotBeReported_EndsWith7)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"}, {"export-ini", "policy.xml", "PRODUCTA1000",
                                                                   "task.ini", "--task", "{task-1}", "--json"});
    EXPECT_EQ(run.exitCode, 7);
    EXPECT_EQ(run.messages, "zupolicy: the export was written, but: writing to standard output failed\n");
    EXPECT_THAT(Bytes(u"task.ini"), HasSubstr("Hour=2"));
}

TEST_F(NativeTool, AFullStandardOutput_IsAFailureForDifferencesToo)
{
    ASSERT_EQ(Tool({"set", "policy.xml", "PRODUCTB2000", "S", "N", "1", "--output", "new.xml"}).exitCode, 0);
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"}, {"diff", "policy.xml", "new.xml", "--json"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.messages, "zupolicy: writing to standard output failed\n");
}

TEST_F(NativeTool, WrittenFileWithoutAReport_HasItsOwnExitCode)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"},
                                {"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5", "--json"});
    EXPECT_EQ(run.exitCode, 7);
    EXPECT_EQ(run.messages, "zupolicy: policy.xml: was written, but writing to standard output failed\n");
    EXPECT_THAT(Decoded(Bytes()), HasSubstr("<Setting name=\"LogLevel\">5</Setting>"));
}

TEST_F(NativeTool, LockOfAProcessThatWasKilled_IsFree)
{
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        HeldFile file;
        const bool isLocked = file.Open(Folder().Path(u"policy.xml")) == 0 && file.TryLock() == 0;
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

TEST_F(NativeTool, LinkToTheFile_HasTheFilesLockAndStays)
{
    ASSERT_EQ(symlink("policy.xml", Path("link.xml").c_str()), 0);
    HeldFile other;
    ASSERT_EQ(other.Open(Folder().Path(u"policy.xml")), 0);
    ASSERT_EQ(other.TryLock(), 0);
    EXPECT_EQ(Set("link.xml").exitCode, 6);
    other.Close();
    EXPECT_EQ(Set("link.xml").exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(Path("link.xml")));
    EXPECT_FALSE(std::filesystem::is_symlink(Path("policy.xml")));
}

TEST_F(NativeTool, LinkSwappedInAllTheTime_NeverMakesTheToolWriteItsTarget)
{
    (void)Folder().Write(u"precious.xml", SmallFile("<Product SoftwareID=\"PRODUCTB2000\"/>"));
    const std::string precious = Bytes(u"precious.xml");
    (void)Folder().Write(u"mine.xml", precious);
    std::atomic<bool> isOver = false;
    // The name is in turn a file of the attacker's and a link to a file that he may not write.
    std::thread attacker([&] {
        while (!isOver) {
            (void)Folder().Write(u"own", precious);
            std::filesystem::rename(Path("own"), Path("mine.xml"));
            std::filesystem::create_symlink(Path("precious.xml"), Path("next"));
            std::filesystem::rename(Path("next"), Path("mine.xml"));
        }
    });
    for (int i = 0; i < 60; ++i) {
        const std::string before = Bytes(u"precious.xml");
        const ToolRun run = Tool({"set", "mine.xml", "PRODUCTB2000", "S", "N", std::to_string(i)});
        // Either the link was there when the file was opened, and its target is what was read, or it is left alone.
        const std::string after = Bytes(u"precious.xml");
        EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 5 || run.exitCode == 3) << run.exitCode << run.messages;
        EXPECT_TRUE(after == before || (run.exitCode == 0 && after.find(">" + std::to_string(i) + "<") != after.npos));
    }
    isOver = true;
    attacker.join();
}

TEST_F(NativeTool, PipeInPlaceOfTheFile_IsRefusedWithoutWaiting)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(Set("pipe").exitCode, 3);
    EXPECT_EQ(Tool({"show", "pipe"}).exitCode, 3);
}

TEST_F(NativeTool, FileThatMayNotBeReplaced_FailsTheDryRunToo)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    ASSERT_EQ(chmod(Path("policy.xml").c_str(), 0666), 0);
    ASSERT_EQ(chmod(Folder().Folder().c_str(), 0755), 0);
    const auto runAsNobody = [&](const std::vector<std::string>& options) {
        std::vector<std::string> arguments = {"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return RunAsNobody(arguments);
    };
    EXPECT_EQ(runAsNobody({}), 3);
    EXPECT_EQ(runAsNobody({"--dry-run"}), 3);
    // The folder takes new files now, but their owner is another one.
    ASSERT_EQ(chmod(Folder().Folder().c_str(), 0777), 0);
    EXPECT_EQ(runAsNobody({}), 3);
    EXPECT_EQ(runAsNobody({"--dry-run"}), 3);
    EXPECT_EQ(Decoded(Bytes()).find(">5<"), std::string::npos);
}

TEST_F(NativeTool, ClosedStandardStreams_AreNeverWrittenInto)
{
    const std::string before = Bytes();
    const char* const closed[] = {">&-", "2>&-", "<&-", ">&- 2>&-", "<&- >&- 2>&-"};
    for (const char* streams : closed) {
        const std::string command = "cd '" + Folder().Folder().string() + "' && '" ZUPM_TOOL "' ";
        EXPECT_EQ(Shell(command + "show policy.xml " + streams),
                  std::string(streams) == "2>&-" || std::string(streams) == "<&-" ? 0 : 4)
            << streams;
        EXPECT_EQ(Bytes(), before) << streams;
        const int edited = Shell(command + "set policy.xml PRODUCTB2000 General LogLevel 5 --json " + streams);
        EXPECT_EQ(edited, std::string(streams) == "2>&-" || std::string(streams) == "<&-" ? 0 : 7) << streams;
        EXPECT_THAT(Decoded(Bytes()), HasSubstr("</PolicyFile>")) << streams;
        (void)Folder().Write(u"policy.xml", before);
    }
    EXPECT_EQ(Folder().Names(), std::vector<std::string>{"policy.xml"});
}

TEST_F(NativeTool, ReaderThatClosesThePipe_FailsTheReportButNotTheEdit)
{
    // The reader is gone before the tool begins.
    const auto run = [&](const std::string& arguments) {
        (void)Shell(
            "cd '" + Folder().Folder().string() +
            "' && rm -f gone code && { while [ ! -e gone ]; do sleep 0.01; done; '" ZUPM_TOOL "' " + arguments +
            " 2> messages; echo $? > code; } | { exec <&-; : > gone; while [ ! -s code ]; do sleep 0.01; done; }");
        return Bytes(u"code");
    };
    EXPECT_EQ(run("set policy.xml PRODUCTB2000 General LogLevel 5 --json"), "7\n");
    EXPECT_THAT(Decoded(Bytes()), HasSubstr("<Setting name=\"LogLevel\">5</Setting>"));
    EXPECT_EQ(run("show policy.xml"), "4\n");
    EXPECT_EQ(run("set policy.xml PRODUCTB2000 S N 1 --output -"), "4\n");
    EXPECT_EQ(Bytes(u"messages"), "zupolicy: writing to standard output failed\n");
}

TEST_F(NativeTool, ExportToALinkToThePolicyFile_IsRefused)
{
    ASSERT_EQ(symlink("policy.xml", Path("link.ini").c_str()), 0);
    const std::string before = Bytes();
    EXPECT_THAT(Tool({"export-ini", "policy.xml", "PRODUCTB2000", "link.ini", "--task", "{task-1}"}),
                Fails(2, HasSubstr("link.ini: is the policy file")));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(NativeTool, FileOverTheProcessesLimit_IsAnErrorAndLeavesNothing)
{
    const std::string before = Bytes();
    // A build that measures coverage writes a profile at its end, which would be over the limit too.
    const std::string command =
        "cd '" + Folder().Folder().string() + "' && ulimit -f 1 && LLVM_PROFILE_FILE=/dev/null '" ZUPM_TOOL "' ";
    EXPECT_EQ(Shell(command + "set policy.xml PRODUCTB2000 General LogLevel 5 2>/dev/null"), 3);
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Folder().Names(), std::vector<std::string>{"policy.xml"});
}

TEST_F(NativeTool, PipeThatNothingReads_IsReportedAsAFailedWrite)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTB2000", "S", "N", "1", "--output", "pipe"}),
                Fails(3,
                      "zupolicy: pipe: Nothing reads from this pipe, or this kind of file cannot be written. "
                      "[NotSupported, 0x80070032]\n"));
}

TEST_F(NativeTool, Device_IsWrittenAndNotReplaced)
{
    const ToolRun run = Tool({"set", "policy.xml", "PRODUCTB2000", "S", "N", "1", "--output", "/dev/null"});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
}

TEST_F(NativeTool, APipeInPlaceOfAPolicyFileIsRefusedAtOnce)
{
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    for (const char* command : {"show", "check"}) {
        EXPECT_EQ(Shell("cd " + Folder().Folder().string() + " && timeout 20 " ZUPM_TOOL " " + command +
                        " pipe > /dev/null 2> messages"),
                  3)
            << command;
        EXPECT_THAT(Bytes(u"messages"), HasSubstr("pipe: ")) << command;
    }
}

/// What the export below says about the file as it was read.
constexpr const char* kLossOfTheExport =
    "p.xml:10:1: warning: setting A of section S and setting a of section S have the same name in an INI file; only "
    "one is kept\n";

/// Runs an export from p.xml and this shell command after the component has read the file, before the export is over:
/// it waits for the reader of its output. The exit code is in the file `code`, the messages are in `messages`.
void ExportWhile(const TempFolder& folder, const std::string& command)
{
    folder.Write(u"p.xml", SmallFile("", "<TaskGroup SoftwareID='P' TaskID='T'><Task><S name='S'><S name='a'>" +
                                             std::string(1 << 20, 'x') + "</S>\n<S name='A'/></S></Task></TaskGroup>"));
    ASSERT_EQ(Shell("cd " + folder.Folder().string() +
                    " && { timeout 20 " ZUPM_TOOL " export-ini p.xml P - --task T 2> messages; echo $? > code; }"
                    " | { head -c 1 > /dev/null; " +
                    command + "; cat > /dev/null; }"),
              0);
}

TEST_F(NativeTool, APipeThatReplacesThePolicyFileDuringAnExportIsNotRead)
{
    ExportWhile(Folder(), "rm p.xml; mkfifo p.xml");
    EXPECT_EQ(Bytes(u"code"), "0\n");
    EXPECT_EQ(Bytes(u"messages"), kLossOfTheExport);
}

TEST_F(NativeTool, ASparseFileOf30GigabytesIsRefusedWithoutMemory)
{
    (void)Folder().Write(u"large.xml", "<a/>");
    std::filesystem::resize_file(Path("large.xml"), std::uintmax_t{30} << 30);
    for (const char* command : {"show", "check"}) {
        EXPECT_THAT(Tool({command, "large.xml"}), Fails(3, HasSubstr("large.xml: "))) << command;
    }
    rusage usage{};
    ASSERT_EQ(getrusage(RUSAGE_CHILDREN, &usage), 0);
    constexpr long kKibibytes = 1 << 20;
    EXPECT_LT(usage.ru_maxrss, kKibibytes);
}

TEST_F(NativeTool, ASparseFileOf30GigabytesThatReplacesThePolicyFileDuringAnExportIsNotRead)
{
    ExportWhile(Folder(), "truncate -s 30G p.xml");
    EXPECT_EQ(Bytes(u"code"), "0\n");
    EXPECT_EQ(Bytes(u"messages"), kLossOfTheExport);
}

}  // namespace
}  // namespace zupm::test
