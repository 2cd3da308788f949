// The commands that write, each run once for each of its system calls: that call fails, once or with all that follow,
// is interrupted by a signal, or is the moment at which the process is killed.
#include <algorithm>
#include <cerrno>
#include <regex>
#include <set>
#include <system_error>

#include "ToolTest.h"
#include "native/FaultyRun.h"
#include "tests/support/Effort.h"

namespace zupm::test {
namespace {

using testing::AnyOf;

constexpr int kWritten = 7;
constexpr int kMostCalls = 5000;

struct WritingRun {
    const char* name;
    std::vector<std::string> arguments;
    const char* file;    ///< the file that it replaces
    const char* backup;  ///< empty when it makes none
};

void PrintTo(const WritingRun& row, std::ostream* out)
{
    *out << row.name;
}

std::string NameOf(const testing::TestParamInfo<WritingRun>& info)
{
    return info.param.name;
}

bool IsTemporary(const std::string& name)
{
    static const std::regex temporary(R"(\.zu[0-9a-f]{32}\.tmp)");
    return std::regex_match(name, temporary);
}

/// A file without the time at which it was written.
std::string WithoutTime(const std::string& text)
{
    static const std::regex stamp("\"20[0-9]{12}\"");
    return std::regex_replace(text, stamp, "\"(now)\"");
}

class FailingCalls : public ToolTest, public testing::WithParamInterface<WritingRun> {
protected:
    void SetUp() override
    {
        Prepare();
        try {
            const FaultyRun passed = Run({});
            ASSERT_EQ(passed.run.exitCode, 0) << passed.run.messages;
            ASSERT_GT(passed.calls.size(), 10U);
            m_new = WithoutTime(File());
            m_messages = passed.run.messages;
            m_namesAfter = Folder().Names();
            m_callCount = static_cast<int>(passed.calls.size());
            m_beforeTheFile = CallsBeforeTheFile();
            RecordProperty("calls", m_callCount);
        } catch (const std::system_error& error) {
            GTEST_SKIP() << error.what();
        }
        ASSERT_NE(m_new, m_old);
    }

    /// The files that each run starts from.
    void Prepare()
    {
        for (const std::string& name : Folder().Names()) {
            std::filesystem::remove(Folder().Folder() / name);
        }
        Folder().Write(u"policy.xml", SmallFile("<Product SoftwareID=\"P\"><Section name=\"S\">"
                                                "<Setting name=\"N\">1</Setting></Section></Product>\n"));
        Folder().Write(u"policy.xml.bak.3", SmallFile("<Product SoftwareID=\"Q\"/>\n"));
        Folder().Write(u"edits.jsonl", R"({"edit":"set","softwareId":"P","section":"S","name":"N","value":"2"})");
        Folder().Write(u"entry.json", R"({"softwareId":"P","sections":[{"name":"S"},{"name":"T"}]})");
        m_old = WithoutTime(File());
        m_oldBytes = File();
        m_namesBefore = Folder().Names();
    }

    [[nodiscard]] FaultyRun Run(const CallFault& fault) const
    {
        return RunToolWith(fault, {Folder().Folder(), {}}, GetParam().arguments);
    }

    /// How many calls a run makes, at least, before it opens its file: those that load the program.
    [[nodiscard]] int CallsBeforeTheFile() const
    {
        constexpr int kCallsOfAMessage = 4;
        std::vector<std::string> arguments = GetParam().arguments;
        arguments[1] = "missing.xml";
        const FaultyRun missing = RunToolWith({}, {Folder().Folder(), {}}, arguments);
        EXPECT_NE(missing.run.exitCode, 0);
        return std::max(0, static_cast<int>(missing.calls.size()) - kCallsOfAMessage);
    }

    [[nodiscard]] std::string File() const { return Bytes(std::filesystem::path(GetParam().file).u16string()); }

    /// The names in the folder, without temporary files if some may stay.
    [[nodiscard]] std::vector<std::string> Names(bool withTemporaries) const
    {
        std::vector<std::string> names = Folder().Names();
        if (!withTemporaries) {
            std::erase_if(names, IsTemporary);
        }
        return names;
    }

    [[nodiscard]] std::string WhichFile() const
    {
        const std::string file = WithoutTime(File());
        return file == m_old ? "old" : file == m_new ? "new" : "torn";
    }

    /// A backup has all bytes of the file, or does not exist.
    void ExpectWholeBackup() const
    {
        const std::u16string backup = std::filesystem::path(GetParam().backup).u16string();
        if (!backup.empty() && Folder().Has(backup)) {
            EXPECT_EQ(Bytes(backup), m_oldBytes) << "a backup of a part";
        }
    }

    /// The exit code says which file there is, and nothing else is left.
    void ExpectOldOrNew(const FaultyRun& outcome, const CallFault& fault) const
    {
        const int code = outcome.run.exitCode;
        const bool isWritten = code == 0 || code == kWritten;
        EXPECT_EQ(WhichFile(), isWritten ? "new" : "old") << testing::PrintToString(outcome.run);
        EXPECT_THAT(code, AnyOf(0, 3, 4, 6, kWritten, 127)) << testing::PrintToString(outcome.run);
        if (code == 0) {
            EXPECT_EQ(outcome.run.messages, m_messages);
        }
        ExpectWholeBackup();
        if (outcome.failedCall == "renameat2" && fault.error == EINVAL && !fault.forEver) {
            EXPECT_EQ(code, 0) << "there is another way to give a name";
        }
        if (!fault.forEver) {
            EXPECT_EQ(outcome.run.messages.empty(), code == 0) << testing::PrintToString(outcome.run);
            EXPECT_EQ(Names(true), isWritten ? m_namesAfter : m_namesBefore);
        }
    }

    /// scripts/torture begins with the first call, and a run of all tests with the first that follows the loading.
    [[nodiscard]] int FirstCall() const { return FaultStride(2) == 1 ? 0 : m_beforeTheFile; }

    void FailEachCall(int error, bool forEver)
    {
        int failures = 0;
        for (int call = FirstCall(); !HasFailure(); ++call) {
            ASSERT_LT(call, kMostCalls) << "it never passed";
            const CallFault fault{.call = call, .error = error, .forEver = forEver};
            Prepare();
            const FaultyRun outcome = Run(fault);
            SCOPED_TRACE(testing::Message() << "call " << call << (forEver ? " and all later ones, " : ", ")
                                            << outcome.failedCall << ", error " << error);
            ExpectOldOrNew(outcome, fault);
            failures += outcome.run.exitCode == 0 ? 0 : 1;
            if (outcome.failedCall.empty()) {
                EXPECT_EQ(outcome.run.exitCode, 0);
                EXPECT_GE(call, m_callCount);
                break;
            }
        }
        m_failures = failures;
    }

    int m_failures = 0;
    std::vector<std::string> m_namesBefore;
    std::vector<std::string> m_namesAfter;

private:
    std::string m_old;
    std::string m_oldBytes;
    std::string m_new;
    std::string m_messages;
    int m_callCount = 0;
    int m_beforeTheFile = 0;
};

TEST_P(FailingCalls, Once_IsReportedAndLeavesTheOldFileOrTheNewOne)
{
    for (const int error : {EIO, EINVAL}) {
        FailEachCall(error, false);
        EXPECT_GT(m_failures, 10);
    }
}

TEST_P(FailingCalls, FromThenOn_IsReportedAndLeavesTheOldFileOrTheNewOne)
{
    FailEachCall(EIO, true);
    EXPECT_GT(m_failures, 10);
}

TEST_P(FailingCalls, ASignalDuringACall_IsReportedOrChangesNothing)
{
    FailEachCall(EINTR, false);
}

TEST_P(FailingCalls, KilledAtAnyCall_LeavesTheOldFileOrTheNewOneAndNoPartOfABackup)
{
    std::set<std::string> left;
    for (int call = FirstCall(); !HasFailure(); ++call) {
        ASSERT_LT(call, kMostCalls) << "it never passed";
        Prepare();
        const FaultyRun outcome = Run({.call = call, .kills = true});
        SCOPED_TRACE(testing::Message() << "call " << call << ", " << outcome.failedCall);
        if (outcome.failedCall.empty()) {
            EXPECT_EQ(outcome.run.exitCode, 0);
            break;
        }
        EXPECT_EQ(outcome.run.exitCode, -1);
        ExpectWholeBackup();
        left.insert(WhichFile());
        const std::vector<std::string> names = Names(false);
        EXPECT_THAT(names, AnyOf(m_namesBefore, m_namesAfter));
        EXPECT_LE(Names(true).size(), names.size() + 1) << "more than one temporary file";
    }
    EXPECT_EQ(left, (std::set<std::string>{"new", "old"}));
}

const WritingRun kRuns[] = {
    {"Set", {"set", "policy.xml", "P", "S", "N", "2", "--backup"}, "policy.xml", "policy.xml.bak.4"},
    {"Remove", {"remove", "policy.xml", "P", "S", "--backup=.old"}, "policy.xml", "policy.xml.old"},
    {"Apply", {"apply", "policy.xml", "--edits", "edits.jsonl", "--backup"}, "policy.xml", "policy.xml.bak.4"},
    {"Import", {"import", "policy.xml", "entry.json", "--merge", "--backup"}, "policy.xml", "policy.xml.bak.4"},
    {"Restore", {"restore", "policy.xml"}, "policy.xml", "policy.xml.bak.4"},
    {"Export", {"export", "policy.xml", "P", "--output", "entry.json"}, "entry.json", ""},
};

INSTANTIATE_TEST_SUITE_P(Tool, FailingCalls, testing::ValuesIn(kRuns), NameOf);

}  // namespace
}  // namespace zupm::test
