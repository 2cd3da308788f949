// Two writers of one file: nothing of either is lost without a word.
#include <chrono>
#include <fstream>
#include <future>
#include <thread>

#include "Failure.h"
#include "ToolTest.h"
#include "file/WriteTarget.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;
using tool::ExitCode;
using tool::LockFile;
using tool::WriteTarget;
using namespace std::chrono_literals;

constexpr int kProcesses = 8;
constexpr int kSettingsEach = 10;

class Lock : public ToolTest {
protected:
    [[nodiscard]] std::filesystem::path File(const char* name) const { return Folder().Folder() / name; }

    [[nodiscard]] ToolRun SetLogLevel(const std::vector<std::string>& options) const
    {
        std::vector<std::string> arguments = {"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", "5"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Tool(arguments);
    }

    /// How a write that was prepared before `change` ends.
    template <class Change>
    [[nodiscard]] ExitCode WriteAfter(const char* name, Change change) const
    {
        const WriteTarget target(File(name).string(), 0s);
        change();
        try {
            target.RequireUnchanged();
            return ExitCode::Ok;
        } catch (const tool::Failure& failure) {
            return failure.Code();
        }
    }
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

TEST_F(Lock, LockFileStaysBesideTheFileAndIsEmpty)
{
    EXPECT_EQ(SetLogLevel({}).exitCode, 0);
    EXPECT_EQ(Folder().Names(), (std::vector<std::string>{"policy.xml", "policy.xml.lock"}));
    EXPECT_EQ(Bytes(u"policy.xml.lock"), "");
    EXPECT_EQ(SetLogLevel({}).exitCode, 0);
}

TEST_F(Lock, ProcessThatDoesNotLetGo_IsWaitedForSoLongAsAskedAndNotLonger)
{
    const std::string before = Bytes();
    LockFile other(File("policy.xml.lock"), File("policy.xml"));
    ASSERT_TRUE(other.TryLock());
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(SetLogLevel({"--lock-timeout", "1"}),
                Fails(6, MatchesPattern("zupolicy: policy\\.xml: .*process.* is editing it; gave up after 1 s "
                                        "\\(--lock-timeout\\)\n")));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 1s);
    EXPECT_THAT(Tool({"remove", "policy.xml", "PRODUCTB2000", "--lock-timeout", "0"}), Fails(6, HasSubstr("0 s")));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Lock, ProcessThatLetsGo_IsFollowed)
{
    auto other = std::make_unique<LockFile>(File("policy.xml.lock"), File("policy.xml"));
    ASSERT_TRUE(other->TryLock());
    std::thread owner([&] {
        std::this_thread::sleep_for(300ms);
        other.reset();
    });
    EXPECT_EQ(SetLogLevel({"--lock-timeout", "300"}).exitCode, 0);
    owner.join();
}

TEST_F(Lock, WhatWritesNothing_WaitsForNobody)
{
    LockFile other(File("policy.xml.lock"), File("policy.xml"));
    ASSERT_TRUE(other.TryLock());
    EXPECT_EQ(SetLogLevel({"--dry-run", "--lock-timeout", "0"}).exitCode, 0);
    EXPECT_EQ(Out({"get", "policy.xml", "PRODUCTB2000", "General", "LogLevel"}), "3\n");
    EXPECT_EQ(SetLogLevel({"--output", "new.xml", "--lock-timeout", "0"}).exitCode, 0);
}

TEST_F(Lock, IsThatOfTheFileThatIsWritten)
{
    LockFile output(File("new.xml.lock"), File("new.xml"));
    LockFile ini(File("task.ini.lock"), File("task.ini"));
    ASSERT_TRUE(output.TryLock() && ini.TryLock());
    EXPECT_THAT(SetLogLevel({"--output", "new.xml", "--lock-timeout", "0"}), Fails(6, HasSubstr("new.xml")));
    EXPECT_THAT(
        Tool({"export-ini", "policy.xml", "PRODUCTA1000", "task.ini", "--task", "{task-1}", "--lock-timeout", "0"}),
        Fails(6, HasSubstr("task.ini")));
    EXPECT_FALSE(Folder().Has(u"new.xml"));
    EXPECT_FALSE(Folder().Has(u"task.ini"));
}

TEST_F(Lock, LockFileThatIsNoFile_IsAnError)
{
    std::filesystem::create_directory(File("policy.xml.lock"));
    const std::string before = Bytes();
    EXPECT_THAT(SetLogLevel({}), Fails(3, HasSubstr("policy.xml.lock cannot be used: ")));
    EXPECT_EQ(Bytes(), before);
}

TEST_F(Lock, MissingFile_GetsNoLockFile)
{
    EXPECT_EQ(Tool({"set", "missing.xml", "PRODUCTB2000", "General", "LogLevel", "5"}).exitCode, 3);
    EXPECT_EQ(Folder().Names(), std::vector<std::string>{"policy.xml"});
}

TEST_F(Lock, FileThatChangedSinceItWasRead_IsLeftAlone)
{
    const std::string bytes = Bytes();
    const auto write = [&](const std::string& text) { return [&, text] { Folder().Write(u"policy.xml", text); }; };
    EXPECT_EQ(WriteAfter("policy.xml", [] {}), ExitCode::Ok);
    EXPECT_EQ(WriteAfter("policy.xml", write(bytes)), ExitCode::Ok) << "the same bytes again";
    EXPECT_EQ(WriteAfter("policy.xml", write(bytes.substr(0, bytes.size() - 1) + " ")), ExitCode::Changed);
    EXPECT_EQ(WriteAfter("policy.xml", write(bytes + "\n")), ExitCode::Changed);
    EXPECT_EQ(WriteAfter("policy.xml", write("")), ExitCode::Changed);
    EXPECT_EQ(WriteAfter("policy.xml", [&] { std::filesystem::remove(File("policy.xml")); }), ExitCode::Changed);
    EXPECT_EQ(WriteAfter("new.xml", [&] { Folder().Write(u"new.xml", "x"); }), ExitCode::Changed);
}

/// Lets something else change the file while the tool is at work: it reads a large file and is to write a small one.
class ChangedMeanwhile : public Lock {
protected:
    ChangedMeanwhile()
    {
        std::string products;
        for (int i = 0; i < 100'000; ++i) {
            products += "<Product SoftwareID=\"P" + std::to_string(i) + "\">" + std::string(100, ' ') + "</Product>\n";
        }
        (void)Folder().Write(u"large.xml", SmallFile(products));
    }

    [[nodiscard]] ToolRun SetWhileTheOutputChanges(const std::vector<std::string>& options)
    {
        (void)Folder().Write(u"small.xml", "old");
        std::filesystem::remove(File("small.xml.lock"));
        std::vector<std::string> arguments = {"set", "large.xml", "P0", "S", "N", "1", "--output", "small.xml"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        std::future<ToolRun> run = std::async(std::launch::async, [&] { return Tool(arguments); });
        while (!Folder().Has(u"small.xml.lock")) {
            std::this_thread::sleep_for(1ms);
        }
        std::this_thread::sleep_for(30ms);
        (void)Folder().Write(u"small.xml", "other");
        return run.get();
    }
};

TEST_F(ChangedMeanwhile, IsNotOverwritten)
{
    // On a busy machine the change may come before the tool has looked, or after it was done.
    ToolRun run;
    for (int tries = 0; tries < 20 && run.exitCode != 5; ++tries) {
        run = SetWhileTheOutputChanges({});
    }
    EXPECT_THAT(run, Fails(5,
                           "zupolicy: small.xml: was changed by something else meanwhile and is left alone "
                           "(--force writes it)\n"));
    EXPECT_EQ(Bytes(u"small.xml"), "other");
}

TEST_F(ChangedMeanwhile, IsOverwrittenWhenForced)
{
    for (int tries = 0; tries < 3; ++tries) {
        const ToolRun run = SetWhileTheOutputChanges({"--force"});
        EXPECT_EQ(run.exitCode, 0) << run.messages;
    }
}

}  // namespace
}  // namespace zupm::test
