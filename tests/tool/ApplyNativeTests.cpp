// apply and what only the native system has: signals, owners, links, limits, the shell.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "EditsTest.h"
#include "platform/HeldFile.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;
using namespace std::chrono_literals;

constexpr const char* kEdit =
    R"({"edit":"set","softwareId":"PRODUCTA1000","section":"General","name":"ScanInterval","value":"15"})";

class NativeApply : public EditsTest {
protected:
    NativeApply() { Folder().Write(u"edits.jsonl", std::string(kEdit) + "\n"); }

    [[nodiscard]] std::string Path(const char* name) const { return (Folder().Folder() / name).string(); }
    /// Runs a shell command in the folder, with the tool as $tool; its exit code.
    [[nodiscard]] int Shell(const std::string& command) const
    {
        const int status =
            std::system(("cd '" + Folder().Folder().string() + "' && tool='" ZUPM_TOOL "' && " + command).c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    [[nodiscard]] bool IsEdited(std::u16string_view name) const
    {
        return Decoded(Bytes(name)).find("<Setting name=\"ScanInterval\">15</Setting>") != std::string::npos;
    }
    void CopySample(std::u16string_view name) const { Folder().Write(name, Bytes()); }

    /// The tool, started to edit 1.xml, 2.xml and 3.xml, of which the second is locked; it has edited the first.
    class Started {
    public:
        explicit Started(const NativeApply& test)
        {
            for (const char16_t* name : {u"1.xml", u"2.xml", u"3.xml"}) {
                test.CopySample(name);
            }
            EXPECT_EQ(m_lock.Open(test.Folder().Path(u"2.xml")), result::Success);
            EXPECT_EQ(m_lock.TryLock(), result::Success);
            m_child = fork();
            if (m_child == 0) {
                const bool isReady = chdir(test.Folder().Folder().c_str()) == 0 &&
                                     dup2(open("out", O_WRONLY | O_CREAT, 0600), STDOUT_FILENO) >= 0 &&
                                     dup2(open("messages", O_WRONLY | O_CREAT, 0600), STDERR_FILENO) >= 0;
                if (isReady) {
                    execl(ZUPM_TOOL, "zupolicy", "apply", "1.xml", "2.xml", "3.xml", "--edits", "edits.jsonl",
                          "--lock-timeout", "40", static_cast<char*>(nullptr));
                }
                _exit(127);
            }
            while (!test.IsEdited(u"1.xml") || test.Bytes(u"out").empty()) {
                std::this_thread::sleep_for(5ms);
            }
        }
        ~Started()
        {
            if (m_child > 0) {
                (void)End(SIGKILL);
            }
        }
        Started(const Started&) = delete;
        Started& operator=(const Started&) = delete;

        /// Sends a signal and waits for the end; the wait status.
        int End(int signal)
        {
            kill(m_child, signal);
            int status = 0;
            waitpid(m_child, &status, 0);
            m_child = 0;
            return status;
        }
        void Unlock() { m_lock.Close(); }

    private:
        HeldFile m_lock;
        pid_t m_child = 0;
    };
};

TEST_F(NativeApply, KilledBetweenTwoFiles_IsCompletedByASecondRun)
{
    Started run(*this);
    EXPECT_TRUE(WIFSIGNALED(run.End(SIGKILL)));
    run.Unlock();
    const std::string first = Bytes(u"1.xml");
    EXPECT_FALSE(IsEdited(u"2.xml"));
    EXPECT_FALSE(IsEdited(u"3.xml"));
    const ToolRun second = ApplyTo({"1.xml", "2.xml", "3.xml"}, kEdit);
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_EQ(second.out,
              "1.xml: unchanged\n2.xml: changed (1 edit)\n3.xml: changed (1 edit)\n"
              "2 changed, 1 unchanged, 0 failed, 0 not done\n");
    EXPECT_EQ(Bytes(u"1.xml"), first);
    EXPECT_TRUE(IsEdited(u"2.xml"));
    EXPECT_TRUE(IsEdited(u"3.xml"));
}

TEST_F(NativeApply, Interrupted_LeavesTheOtherFilesAndSaysSo)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        Started run(*this);
        const std::string before = Bytes(u"2.xml");
        const int status = run.End(signal);
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 4);
        EXPECT_EQ(Bytes(u"out"),
                  "1.xml: changed (1 edit)\n2.xml: not done\n3.xml: not done\n"
                  "1 changed, 0 unchanged, 0 failed, 2 not done\n");
        EXPECT_EQ(Bytes(u"messages"), "zupolicy: interrupted; the files that are not done are as they were\n");
        EXPECT_EQ(Bytes(u"2.xml"), before);
        EXPECT_FALSE(IsEdited(u"3.xml"));
        std::filesystem::remove(Path("out"));
        std::filesystem::remove(Path("messages"));
    }
}

TEST_F(NativeApply, EditsFromStandardInput_AreReadWhenTheNameIsADash)
{
    EXPECT_EQ(Shell("$tool apply policy.xml --edits - < edits.jsonl > out"), 0);
    EXPECT_TRUE(IsEdited(u"policy.xml"));
    EXPECT_EQ(Shell("$tool apply policy.xml --edits - <&- 2> out"), 3);
    EXPECT_EQ(Bytes(u"out"), "zupolicy: -: the edits cannot be read\n");
}

TEST_F(NativeApply, EditsFromAPipe_AreRead)
{
    CopySample(u"new.xml");
    EXPECT_EQ(Shell("$tool set new.xml PRODUCTA1000 General ScanInterval 15 && mkfifo pipe"), 0);
    EXPECT_EQ(Shell("{ $tool diff policy.xml new.xml --ignore-versions --json > pipe & } && "
                    "$tool apply policy.xml --edits pipe > out"),
              0);
    EXPECT_TRUE(IsEdited(u"policy.xml"));
}

TEST_F(NativeApply, FullDisk_LeavesTheFileAndNoBackup)
{
    const std::string before = Bytes();
    const std::vector<std::string> names = {"edits.jsonl", "messages", "out", "policy.xml"};
    for (const char* options : {"", " --backup"}) {
        // No file may get more than 512 bytes.
        EXPECT_EQ(
            Shell("ulimit -f 1 && $tool apply policy.xml --edits edits.jsonl 2> messages > out" + std::string(options)),
            3);
        EXPECT_THAT(Bytes(u"messages"),
                    testing::StartsWith(*options == '\0' ? "policy.xml: " : "policy.xml: the backup"));
        EXPECT_EQ(Bytes(u"out"), "0 changed, 0 unchanged, 1 failed, 0 not done\n");
        EXPECT_EQ(Bytes(), before);
        EXPECT_EQ(Folder().Names(), names);
    }
}

TEST_F(NativeApply, DiskThatFillsUpDuringTheRun_LeavesEachFileOldOrNew)
{
    // A file system of its own that holds the files, and one new file more.
    const int code = Shell(
        "unshare -m sh -c 'mkdir disk && mount -t tmpfs -o size=24k none disk 2> /dev/null || exit 99; "
        "cp policy.xml disk/1.xml; cp policy.xml disk/2.xml; head -c 1000000 /dev/zero > disk/fill 2> /dev/null; "
        "cp disk/1.xml before; \"$0\" apply disk/1.xml disk/2.xml --keep-going --edits edits.jsonl > out 2> messages; "
        "echo $? > code; ls disk > names; cmp disk/1.xml before && cmp disk/2.xml before' $tool 2> /dev/null");
    if (code == 99 || !Folder().Has(u"code")) {
        GTEST_SKIP() << "no file system can be mounted here";
    }
    EXPECT_EQ(code, 0) << "both files are as they were";
    EXPECT_EQ(Bytes(u"code"), "3\n");
    EXPECT_THAT(Bytes(u"messages"), HasSubstr("[DiskFull, 0x80070070]"));
    EXPECT_EQ(Bytes(u"out"), "0 changed, 0 unchanged, 2 failed, 0 not done\n");
    EXPECT_EQ(Bytes(u"names"), "1.xml\n2.xml\nfill\n");
}

TEST_F(NativeApply, StandardOutputOnAFullDisk_HasItsOwnExitCode)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"}, {"apply", "policy.xml", "--edits", "edits.jsonl"});
    EXPECT_EQ(run.exitCode, 7);
    EXPECT_EQ(run.messages, "zupolicy: files were written, but writing to standard output failed\n");
    EXPECT_TRUE(IsEdited(u"policy.xml"));
    EXPECT_EQ(RunTool({Folder().Folder(), "/dev/full"}, {"apply", "policy.xml", "--edits", "edits.jsonl"}).exitCode, 4);
}

TEST_F(NativeApply, Backup_HasTheRightsAndTheOwnerOfTheFile)
{
    ASSERT_EQ(chmod(Path("policy.xml").c_str(), 0640), 0);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(Path("policy.xml").c_str(), 65534, 65533), 0);
    }
    struct stat before {};
    ASSERT_EQ(stat(Path("policy.xml").c_str(), &before), 0);
    EXPECT_EQ(ApplyTo({"policy.xml"}, kEdit, {"--backup"}).exitCode, 0);
    struct stat backup {};
    ASSERT_EQ(stat(Path("policy.xml.bak").c_str(), &backup), 0);
    EXPECT_EQ(backup.st_mode, before.st_mode);
    EXPECT_EQ(backup.st_uid, before.st_uid);
    EXPECT_EQ(backup.st_gid, before.st_gid);
}

TEST_F(NativeApply, ALinkUnderTheBackupsName_IsNotFollowed)
{
    const std::string before = Bytes();
    Folder().Write(u"precious", "precious");
    ASSERT_EQ(symlink("precious", Path("policy.xml.bak").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", Path("policy.xml.bak.1").c_str()), 0);
    EXPECT_THAT(ApplyTo({"policy.xml"}, kEdit, {"--backup"}).out, HasSubstr("backup policy.xml.bak.2\n"));
    EXPECT_EQ(Bytes(u"precious"), "precious");
    EXPECT_FALSE(Folder().Has(u"nowhere"));
    EXPECT_EQ(Bytes(u"policy.xml.bak.2"), before);
}

TEST_F(NativeApply, FileThatChangesMeanwhile_IsNotOverwrittenAndHasNoBackup)
{
    std::string products = "<Product SoftwareID=\"PRODUCTA1000\"/>";
    for (int i = 0; i < 100'000; ++i) {
        products += "<Product SoftwareID=\"P" + std::to_string(i) + "\">" + std::string(100, ' ') + "</Product>\n";
    }
    const std::string large = SmallFile(products);
    const auto isLocked = [&] {
        HeldFile file;
        return file.Open(Folder().Path(u"large.xml")) == result::Success && file.TryLock() == result::FileLocked;
    };
    int code = 0;
    // On a busy machine the change may happen before the tool has read the file, or after it has finished. So it is
    // tried at several moments, from 15 ms to half a second.
    for (int tries = 0; tries < 20 && code != 5; ++tries) {
        (void)Shell("rm -f large.xml.bak* code");
        Folder().Write(u"large.xml", large);
        EXPECT_EQ(Shell("{ $tool apply large.xml --backup --edits edits.jsonl > out 2> messages; echo $? > code; } &"),
                  0);
        while (!isLocked() && !Folder().Has(u"code")) {
        }
        std::this_thread::sleep_for(15ms * (1 << (tries % 6)));
        Folder().Write(u"large.xml", "other");
        while (!Folder().Has(u"code") || Bytes(u"code").empty()) {
            std::this_thread::sleep_for(5ms);
        }
        code = std::stoi(Bytes(u"code"));
    }
    ASSERT_EQ(code, 5);
    EXPECT_EQ(Bytes(u"messages"),
              "large.xml: The file was changed by something else since it was loaded, and is left alone. "
              "[FileChanged, 0xFFFFFAEA]; --force overwrites it\n");
    EXPECT_EQ(Bytes(u"large.xml"), "other");
    EXPECT_FALSE(Folder().Has(u"large.xml.bak"));
}

}  // namespace
}  // namespace zupm::test
