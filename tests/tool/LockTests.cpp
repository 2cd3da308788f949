// Two writers of one file: nothing of either is lost without a message.
#include <chrono>
#include <future>
#include <memory>
#include <thread>

#include "ToolTest.h"
#include "platform/HeldFile.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;
using namespace std::chrono_literals;

constexpr int kProcesses = 8;
constexpr int kSettingsEach = 10;

/// Another editor of a file: holds the lock that the tool takes.
class OtherEditor {
public:
    explicit OtherEditor(const std::u16string& path)
    {
        EXPECT_EQ(m_file.Open(path), result::Success);
        EXPECT_EQ(m_file.TryLock(), result::Success);
    }

private:
    HeldFile m_file;
};

class Lock : public ToolTest {
protected:
    [[nodiscard]] ToolRun SetLogLevel(const std::vector<std::string>& options) const
    {
        std::vector<std::string> arguments = {"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Tool(arguments);
    }
    [[nodiscard]] std::u16string Path() const { return Folder().Path(u"policy.xml"); }
};

TEST_F(Lock, ProcessesThatEditOneFileAtOnce_LoseNothing)
{
    const auto edit = [&](int process) {
        for (int setting = 0; setting < kSettingsEach; ++setting) {
            const std::string name = std::to_string(process) + "-" + std::to_string(setting);
            const ToolRun run =
                Tool({"set", "policy.xml", "PRODUCTB2000", "Shared", name, name, "--lock-timeout", "300"});
            EXPECT_EQ(run.exitCode, 0) << run.messages;
        }
    };
    std::vector<std::future<void>> processes;
    for (int process = 0; process < kProcesses; ++process) {
        processes.push_back(std::async(std::launch::async, edit, process));
    }
    for (std::future<void>& process : processes) {
        process.get();
    }
    const std::string text = Decoded(Bytes());
    for (int process = 0; process < kProcesses; ++process) {
        for (int setting = 0; setting < kSettingsEach; ++setting) {
            const std::string name = std::to_string(process) + "-" + std::to_string(setting);
            EXPECT_THAT(text, HasSubstr("<Setting name=\"" + name + "\">" + name + "</Setting>"));
        }
    }
}

TEST_F(Lock, EditThatChangesNothingFailsOrSucceeds_LeavesNothingBesideTheFile)
{
    const std::vector<std::string> before = {"broken.xml", "policy.xml"};
    (void)Folder().Write(u"broken.xml", "<R>");
    EXPECT_EQ(SetLogLevel({}).exitCode, 0);
    EXPECT_EQ(Folder().Names(), before);
    EXPECT_EQ(SetLogLevel({}).exitCode, 0) << "nothing to change";
    EXPECT_EQ(SetLogLevel({"--dry-run"}).exitCode, 0);
    EXPECT_EQ(Tool({"remove", "policy.xml", "PRODUCTX"}).exitCode, 1);
    EXPECT_EQ(Tool({"set", "broken.xml", "P", "S", "N", "1"}).exitCode, 3);
    EXPECT_EQ(Tool({"set", "missing.xml", "P", "S", "N", "1"}).exitCode, 3);
    EXPECT_EQ(Folder().Names(), before);
}

TEST_F(Lock, LockThatIsNotReleased_IsWaitedForUntilTheTimeout)
{
    const std::string before = Bytes();
    const OtherEditor other(Path());
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(SetLogLevel({"--lock-timeout", "1"}),
                Fails(6, "zupolicy: policy.xml: another process is editing it; gave up after 1 s (--lock-timeout)\n"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 1s);
    EXPECT_THAT(Tool({"remove", "policy.xml", "PRODUCTB2000", "--lock-timeout", "0"}), Fails(6, HasSubstr("0 s")));
    const ToolRun run = SetLogLevel({"--lock-timeout", "0", "--json"});
    EXPECT_THAT(run.out, HasSubstr("{\"code\": \"FFFFFAEB\", \"name\": \"FileLocked\", \"exit\": 6, "
                                   "\"file\": \"policy.xml\""));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Lock, LockThatIsReleased_IsTakenByTheWaitingEdit)
{
    auto other = std::make_unique<OtherEditor>(Path());
    std::thread owner([&] {
        std::this_thread::sleep_for(300ms);
        other.reset();
    });
    EXPECT_EQ(SetLogLevel({"--lock-timeout", "300"}).exitCode, 0);
    owner.join();
}

TEST_F(Lock, DryRun_WaitsAsTheEditDoes)
{
    const OtherEditor other(Path());
    EXPECT_EQ(SetLogLevel({"--dry-run", "--lock-timeout", "0"}).exitCode, 6);
}

TEST_F(Lock, WhatDoesNotReplaceTheFile_WaitsForNobody)
{
    const OtherEditor other(Path());
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTB2000", "General", "LogLevel"}), "3\n");
    EXPECT_EQ(Tool({"check", "policy.xml"}).exitCode, 0);
    EXPECT_EQ(SetLogLevel({"--output", "new.xml", "--lock-timeout", "0"}).exitCode, 0);
    EXPECT_EQ(Tool({"export-ini", "policy.xml", "PRODUCTA1000", "task.ini", "--task", "{task-1}"}).exitCode, 0);
}

TEST_F(Lock, ExportsOfSeveralProcessesIntoOneIniFile_LoseNothing)
{
    constexpr int kSettings = 12;
    std::string tasks;
    for (int process = 0; process < kProcesses; ++process) {
        const std::string id = std::to_string(process);
        tasks += "<TaskGroup SoftwareID=\"P\" TaskID=\"" + id + "\"><Task><Section name=\"S" + id + "\">";
        for (int setting = 0; setting < kSettings; ++setting) {
            const std::string number = std::to_string(setting);
            tasks += "<Setting name=\"N" + number + "\">" + id + "/" + number + "</Setting>";
        }
        tasks += "</Section></Task></TaskGroup>";
    }
    (void)Folder().Write(u"tasks.xml", SmallFile("", tasks));
    (void)Folder().Write(u"all.ini", "; begins here\r\n");
    std::vector<std::future<ToolRun>> runs;
    for (int process = 0; process < kProcesses; ++process) {
        runs.push_back(std::async(std::launch::async, [&, process] {
            return Tool({"export-ini", "tasks.xml", "P", "all.ini", "--task", std::to_string(process)});
        }));
    }
    for (std::future<ToolRun>& run : runs) {
        const ToolRun ended = run.get();
        EXPECT_EQ(ended.exitCode, 0) << ended.messages;
    }
    const std::string ini = Bytes(u"all.ini");
    for (int process = 0; process < kProcesses; ++process) {
        for (int setting = 0; setting < kSettings; ++setting) {
            const std::string number = std::to_string(setting);
            EXPECT_THAT(ini, HasSubstr("N" + number + "=" + std::to_string(process) + "/" + number + "\r\n"));
        }
    }
    for (const std::string& name : Folder().Names()) {
        EXPECT_FALSE(name.ends_with(".tmp") || name.ends_with(".lock")) << name;
    }
}

TEST_F(Lock, OutputThatIsTheFileItself_IsRefused)
{
    const std::string before = Bytes();
    EXPECT_THAT(SetLogLevel({"--output", "./policy.xml"}),
                Fails(2, "zupolicy: ./policy.xml: is FILE itself; leave out --output to replace it\n"));
    EXPECT_EQ(Bytes(), before);
}

/// Changes the file while the tool has it open. The file is large, so loading it takes a while.
class ChangedMeanwhile : public Lock {
protected:
    ChangedMeanwhile()
    {
        std::string products;
        for (int i = 0; i < 100'000; ++i) {
            products += "<Product SoftwareID=\"P" + std::to_string(i) + "\">" + std::string(100, ' ') + "</Product>\n";
        }
        m_text = SmallFile(products);
    }

    /// Whether an editor has the file's lock.
    [[nodiscard]] bool IsLocked() const
    {
        HeldFile file;
        return file.Open(Folder().Path(u"large.xml")) == result::Success && file.TryLock() == result::FileLocked;
    }

    /// Runs `set` and overwrites the file some time after the tool has locked it; the run, or nothing when it was done
    /// too soon.
    [[nodiscard]] std::optional<ToolRun> SetWhileTheFileChanges(const std::vector<std::string>& options,
                                                                std::chrono::milliseconds wait)
    {
        (void)Folder().Write(u"large.xml", m_text);
        std::vector<std::string> arguments = {"set", "large.xml", "P0", "S", "N", "1"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        std::future<ToolRun> run = std::async(std::launch::async, [&] { return Tool(arguments); });
        while (!IsLocked()) {
            if (run.wait_for(0s) == std::future_status::ready) {
                return std::nullopt;
            }
        }
        std::this_thread::sleep_for(wait);
        (void)Folder().Write(u"large.xml", "other");
        return run.get();
    }

    /// From 15 ms to half a second: a sanitized tool on a busy machine takes long to read the file.
    static std::chrono::milliseconds MomentOf(int tries) { return 15ms * (1 << (tries % 6)); }

    std::string m_text;
};

TEST_F(ChangedMeanwhile, IsNotOverwritten)
{
    // On a busy machine the change may happen before the tool has read the file, or after it has finished. So it is
    // tried at several moments.
    std::optional<ToolRun> run;
    for (int tries = 0; tries < 20 && !(run && run->exitCode == 5); ++tries) {
        run = SetWhileTheFileChanges({}, MomentOf(tries));
    }
    ASSERT_TRUE(run);
    EXPECT_THAT(*run, Fails(5,
                            "zupolicy: large.xml: another program changed it in the meantime; it was not overwritten "
                            "(--force overwrites it)\n"));
    EXPECT_EQ(Bytes(u"large.xml"), "other");
}

TEST_F(ChangedMeanwhile, IsOverwrittenWhenForced)
{
    std::optional<ToolRun> run;
    for (int tries = 0; tries < 20 && !(run && run->exitCode == 0 && Bytes(u"large.xml") != "other"); ++tries) {
        run = SetWhileTheFileChanges({"--force"}, MomentOf(tries));
    }
    ASSERT_TRUE(run);
    EXPECT_EQ(run->exitCode, 0) << run->messages;
    EXPECT_THAT(Bytes(u"large.xml"), HasSubstr("<Setting name=\"N\">1</Setting>"));
}

}  // namespace
}  // namespace zupm::test
