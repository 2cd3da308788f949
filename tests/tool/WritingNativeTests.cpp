// The writing commands and what only the native system has: full disks, little memory, owners, links, pipes, terminals.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "EditsTest.h"
#include "platform/HeldFile.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using namespace std::chrono_literals;

class NativeWriting : public EditsTest {
protected:
    NativeWriting()
    {
        Folder().Write(
            u"edits.jsonl",
            R"({"edit":"set","softwareId":"PRODUCTA1000","section":"General","name":"Enabled","value":"0"})");
        Folder().Write(u"entry.json", R"({"softwareId":"NEW","sections":[{"name":"S"}]})");
    }
    [[nodiscard]] std::string Path(const char* name) const { return (Folder().Folder() / name).string(); }
    /// Runs a shell command in the folder, with the tool as $tool; its exit code.
    [[nodiscard]] int Shell(const std::string& command) const
    {
        const int status =
            std::system(("cd '" + Folder().Folder().string() + "' && tool='" ZUPM_TOOL "' && " + command).c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /// An older file as the only backup.
    void MakeBackup() const { Folder().Write(u"policy.xml.bak", SmallFile("")); }

    const std::vector<std::string> m_commands = {
        "set policy.xml PRODUCTA1000 General Enabled 0 --backup=.b",
        "set policy.xml PRODUCTA1000 General Enabled 0 --diff --backup=.b",
        "remove policy.xml PRODUCTA1000 General --backup=.b",
        "apply policy.xml --edits edits.jsonl --backup=.b",
        "import policy.xml entry.json --backup=.b",
        "import policy.xml entry.json",
        "restore policy.xml",
    };
};

TEST_F(NativeWriting, FullDisk_LeavesTheFileAndNothingElse)
{
    MakeBackup();
    const std::string before = Bytes();
    // The reports lie elsewhere, because no file may get more than 512 bytes.
    const TempFolder reports;
    const std::string redirected =
        " > '" + (reports.Folder() / "out").string() + "' 2> '" + (reports.Folder() / "messages").string() + "'";
    const std::vector<std::string> names = Folder().Names();
    for (const std::string& command : m_commands) {
        EXPECT_EQ(Shell("ulimit -f 1 && $tool " + command + redirected), 3) << command;
        EXPECT_THAT(reports.Read(u"messages"),
                    HasSubstr(command.find("--diff") == command.npos ? "policy.xml" : "document.xml"))
            << command;
        EXPECT_EQ(Bytes(), before) << command;
        EXPECT_EQ(Folder().Names(), names) << command;
    }
    EXPECT_EQ(Shell("ulimit -f 0 && $tool export policy.xml PRODUCTA1000 -o entry.json 2> /dev/null"), 3);
    EXPECT_THAT(Bytes(u"entry.json"), testing::StartsWith("{\"softwareId\":\"NEW\""));
    EXPECT_EQ(Folder().Names(), names);
}

TEST_F(NativeWriting, LittleMemory_LeavesTheFileOldOrNew)
{
    MakeBackup();
    const std::string before = Bytes();
    int failures = 0;
    for (const std::string& command : m_commands) {
        // From too little for the program to start to enough.
        for (int megabytes = 6; megabytes < 40; megabytes += 3) {
            Folder().Write(u"policy.xml", before);
            const int code = Shell("ulimit -v " + std::to_string(megabytes * 1024) + " && $tool " + command +
                                   " > /dev/null 2> messages");
            failures += code != 0 ? 1 : 0;
            EXPECT_EQ(code == 0, Bytes() != before) << command << ' ' << megabytes << Bytes(u"messages");
            const std::vector<std::string> names = Folder().Names();
            for (const std::string& name : names) {
                EXPECT_THAT(name, Not(HasSubstr(".tmp"))) << command;
            }
            (void)Shell("rm -f policy.xml.b* policy.xml.bak.*");
        }
    }
    EXPECT_GT(failures, 0);
}

TEST_F(NativeWriting, StandardOutputOnAFullDisk_HasItsOwnExitCode)
{
    MakeBackup();
    const std::string before = Bytes();
    for (const char* command : {"restore policy.xml", "import policy.xml entry.json",
                                "set policy.xml PRODUCTA1000 General Enabled 0 --diff"}) {
        Folder().Write(u"policy.xml", before);
        EXPECT_EQ(Shell(std::string("$tool ") + command + " > /dev/full 2> messages"), 7) << command;
        EXPECT_THAT(Bytes(u"messages"), HasSubstr("written, but writing to standard output failed\n")) << command;
        EXPECT_NE(Bytes(), before) << command;
    }
    EXPECT_EQ(Shell("$tool export policy.xml PRODUCTA1000 > /dev/full 2> messages"), 4);
    for (const std::string command : {"export policy.xml PRODUCTA1000", "report policy.xml"}) {
        EXPECT_EQ(Shell("$tool " + command + " --json -o new > /dev/full 2> messages"), 7) << command;
        EXPECT_EQ(Bytes(u"messages"), "zupolicy: new: was written, but writing to standard output failed\n");
        EXPECT_EQ(Shell("$tool " + command + " -o new > /dev/full 2> messages"), 0) << command;
    }
}

TEST_F(NativeWriting, Restore_KeepsRightsOwnerAndAttributesOfTheFile)
{
    MakeBackup();
    ASSERT_EQ(chmod(Path("policy.xml").c_str(), 0640), 0);
    const bool hasAttributes = setxattr(Path("policy.xml").c_str(), "user.site", "x", 1, 0) == 0;
    if (geteuid() == 0) {
        ASSERT_EQ(chown(Path("policy.xml").c_str(), 65534, 65533), 0);
    }
    struct stat before {};
    ASSERT_EQ(stat(Path("policy.xml").c_str(), &before), 0);
    EXPECT_EQ(Shell("$tool restore policy.xml -q"), 0);
    struct stat after {};
    ASSERT_EQ(stat(Path("policy.xml").c_str(), &after), 0);
    EXPECT_NE(after.st_ino, before.st_ino) << "replaced in one step";
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    char value = 0;
    EXPECT_EQ(getxattr(Path("policy.xml").c_str(), "user.site", &value, 1), hasAttributes ? 1 : -1);
    ASSERT_EQ(stat(Path("policy.xml.bak.1").c_str(), &after), 0);
    EXPECT_EQ(after.st_mode, before.st_mode);
}

TEST_F(NativeWriting, Links_StayAndLeadToTheFile)
{
    MakeBackup();
    const std::string restored = Bytes(u"policy.xml.bak");
    ASSERT_EQ(rename(Path("policy.xml").c_str(), Path("real.xml").c_str()), 0);
    ASSERT_EQ(symlink("real.xml", Path("policy.xml").c_str()), 0);
    // A link is no backup, and is not written through.
    ASSERT_EQ(symlink("real.xml", Path("policy.xml.bak.1").c_str()), 0);
    EXPECT_EQ(Shell("$tool restore policy.xml > out"), 0);
    EXPECT_EQ(Bytes(u"out"), "policy.xml: restored from policy.xml.bak, backup policy.xml.bak.2\n");
    EXPECT_TRUE(std::filesystem::is_symlink(Path("policy.xml")));
    EXPECT_EQ(Bytes(u"real.xml"), restored);
    EXPECT_EQ(Shell("$tool restore policy.xml --from policy.xml.bak.1 2> messages"), 3);
    EXPECT_THAT(Bytes(u"messages"), HasSubstr("is no backup of policy.xml"));
    // One that somebody else planted where everybody may write.
    if (geteuid() == 0) {
        EXPECT_EQ(Shell("mkdir shared && chmod 1777 shared && chown 65534 shared && cp real.xml shared/real.xml && "
                        "cp policy.xml.bak.2 shared/p.xml.bak && ln -s real.xml shared/p.xml && "
                        "chown -h 65533 shared/p.xml"),
                  0);
        EXPECT_EQ(Shell("$tool restore shared/p.xml 2> messages"), 3);
        EXPECT_EQ(Bytes(u"messages"), "zupolicy: shared/p.xml: Permission denied\n");
    }
}

TEST_F(NativeWriting, AReadOnlyFolder_IsForeseenByADryRun)
{
    MakeBackup();
    if (geteuid() == 0 && Shell("command -v setpriv > out") != 0) {
        GTEST_SKIP() << "nothing restricts this user";
    }
    const std::string before = Bytes();
    EXPECT_EQ(Shell("chmod 777 . && chmod 666 policy.xml && chmod 555 ."), 0);
    const std::string run = geteuid() == 0 ? "setpriv --reuid 65534 --regid 65534 --clear-groups $tool " : "$tool ";
    for (const char* option : {"", " -n"}) {
        const int code = Shell(run + "restore policy.xml" + option + " 2> /dev/null");
        EXPECT_EQ(code, 3) << option;
    }
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Shell("chmod 755 ."), 0);
    EXPECT_FALSE(Folder().Has(u"policy.xml.bak.1"));
}

TEST_F(NativeWriting, PipesAndStandardInput_AreRead)
{
    EXPECT_EQ(Shell("printf 'se\\ncret\\n' | $tool set policy.xml PRODUCTA1000 General Enabled --value-file - && "
                    "$tool get policy.xml PRODUCTA1000 General Enabled > out"),
              0);
    EXPECT_EQ(Bytes(u"out"), "se\ncret\n");
    EXPECT_EQ(Shell("$tool set policy.xml PRODUCTA1000 General Enabled --value-file - <&- 2> out"), 3);
    EXPECT_EQ(Bytes(u"out"), "zupolicy: -: the value cannot be read\n");
    EXPECT_EQ(Shell("$tool set policy.xml PRODUCTA1000 General Enabled --value-file /dev/zero 2> out"), 3);
    Folder().Write(u"new.xml", SmallFile(""));
    EXPECT_EQ(Shell("$tool export policy.xml PRODUCTA1000 | $tool import new.xml - > out"), 0);
    EXPECT_EQ(Shell("$tool import new.xml - <&- 2> out"), 3);
    EXPECT_EQ(Shell("$tool export policy.xml PRODUCTA1000 -o /dev/null 2> out"), 3);
    EXPECT_EQ(Bytes(u"out"), "zupolicy: /dev/null: not a regular file\n");
    EXPECT_EQ(Shell("mkfifo pipe && $tool restore pipe 2> out"), 3);
    EXPECT_EQ(Bytes(u"out"), "zupolicy: pipe: not a regular file\n");
}

TEST_F(NativeWriting, OddNames_CannotPassForLinesOfTheTool)
{
    Folder().Write(u"a\n\u202E'b.xml", Bytes());
    const std::string name = "a\n\xE2\x80\xAE'b.xml";
    EXPECT_EQ(Tool({"set", name, "PRODUCTA1000", "General", "Enabled", "0", "--backup", "-v"}).messages,
              "a\\n\\u202e'b.xml: changed, backup a\\n\\u202e'b.xml.bak\n");
    EXPECT_THAT(
        Tool({"restore", name, "--diff"}).out,
        testing::StartsWith("a\\n\\u202e'b.xml: restored from a\\n\\u202e'b.xml.bak, backup a\\n\\u202e'b.xml.bak.1\n"
                            "--- a\\n\\u202e'b.xml\n+++ a\\n\\u202e'b.xml\n@@"));
    EXPECT_EQ(Tool({"restore", "\xFF.xml"}).exitCode, 3);
    EXPECT_EQ(Tool({"set", "policy.xml", "PRODUCTA1000", "General", "Enabled", "--value-file", "\xFF"}).exitCode, 3);
}

TEST_F(NativeWriting, FileThatChangesDuringARestore_IsNotOverwritten)
{
    // The name gets another file while the tool waits for the lock: it takes the new one.
    MakeBackup();
    HeldFile other;
    ASSERT_EQ(other.Open(Folder().Path(u"policy.xml")), result::Success);
    ASSERT_EQ(other.TryLock(), result::Success);
    EXPECT_EQ(Shell("{ $tool restore policy.xml > out 2> messages; echo $? > code; } &"), 0);
    std::this_thread::sleep_for(200ms);
    const std::string changed = SmallFile("<Product SoftwareID='X'/>");
    Folder().Write(u"new.xml", changed);
    ASSERT_EQ(rename(Path("new.xml").c_str(), Path("policy.xml").c_str()), 0);
    other.Close();
    while (!Folder().Has(u"code") || Bytes(u"code").empty()) {
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_EQ(Bytes(u"code"), "0\n");
    EXPECT_EQ(Bytes(u"policy.xml.bak.1"), changed) << "the backup has what was replaced";
}

/// Runs a command on a terminal of its own and returns what the terminal shows.
class NativeTerminal : public NativeWriting {
protected:
    [[nodiscard]] std::string OnTerminal(const std::string& command) const
    {
        EXPECT_EQ(
            Shell("TOOL=$tool python3 -c 'import pty, sys; sys.exit(pty.spawn([\"/bin/sh\", \"-c\", sys.argv[1]]) "
                  ">> 8)' '" +
                  command + "' > out < /dev/null"),
            0)
            << command;
        return Bytes(u"out");
    }
};

TEST_F(NativeTerminal, Differences_HaveColoursThere)
{
    const std::string set = "$TOOL set policy.xml PRODUCTA1000 General Enabled 0 --diff -n";
    EXPECT_THAT(OnTerminal("TERM=xterm " + set), HasSubstr("\x1b[32m+"));
    EXPECT_THAT(OnTerminal("TERM=dumb " + set), Not(HasSubstr("\x1b[")));
    EXPECT_THAT(OnTerminal("NO_COLOR=1 TERM=xterm " + set), Not(HasSubstr("\x1b[")));
    EXPECT_THAT(OnTerminal("NO_COLOR= TERM=xterm " + set), HasSubstr("\x1b[32m+"));
    EXPECT_THAT(OnTerminal("TERM=xterm " + set + " | cat"), Not(HasSubstr("\x1b[")));
}

TEST_F(NativeTerminal, LongRuns_ShowTheirProgressThere)
{
    HeldFile other;
    Folder().Write(u"other.xml", Bytes());
    ASSERT_EQ(other.Open(Folder().Path(u"other.xml")), result::Success);
    ASSERT_EQ(other.TryLock(), result::Success);
    const std::string apply = "$TOOL apply policy.xml other.xml --edits edits.jsonl --lock-timeout 2 ";
    EXPECT_THAT(OnTerminal(apply + "> report; true"), HasSubstr("1 of 2 files\r            \r"));
    EXPECT_THAT(OnTerminal(apply + "> report 2> messages; true"), Not(HasSubstr("files")));
    EXPECT_THAT(Bytes(u"messages"), Not(HasSubstr("of 2")));
    EXPECT_THAT(OnTerminal(apply + "-q; true"), Not(HasSubstr("of 2")));
}

TEST_F(NativeTerminal, LongRunsThatOnlyRead_ShowTheirProgressThere)
{
    for (const std::string command : {"check --jobs 1", "query", "report"}) {
        const std::string run = "(sleep 1.3; cat policy.xml) | $TOOL " + command + " policy.xml - > report";
        EXPECT_THAT(OnTerminal(run + "; true"), HasSubstr("1 of 2 files\r            \r")) << command;
        EXPECT_THAT(OnTerminal(run + " 2> messages; true"), Not(HasSubstr("of 2"))) << command;
        EXPECT_THAT(Bytes(u"messages"), Not(HasSubstr("of 2"))) << command;
    }
}

}  // namespace
}  // namespace zupm::test
