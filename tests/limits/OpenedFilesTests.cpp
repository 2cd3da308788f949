// Loading and editing open the named file and no other. The tests trace the process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <sstream>

#include "tests/limits/Attack.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

constexpr std::size_t kSize = 100'000;
/// The files that the attacker reads after the attack.
constexpr std::string_view kMeasured = "/proc/self/status";
constexpr const char* kTracer = "/usr/bin/strace";

/// The first quoted name in a line of the trace; empty when there is none.
std::string QuotedIn(const std::string& line)
{
    const std::size_t begin = line.find('"') + 1;
    const std::size_t end = line.find('"', begin);
    return begin == 0 || end == std::string::npos ? std::string() : line.substr(begin, end - begin);
}

/// Whether a call is about the attacked file, a file written next to it, or the tests' own folders.
bool IsExpected(const std::string& line, const std::string& folder)
{
    static const std::string testFolders = (std::filesystem::temp_directory_path() / "zupm-test-").string();
    const std::string path = QuotedIn(line);
    const bool isRelative = !path.starts_with("/");
    return path.starts_with(folder) || path.starts_with(testFolders) ||
           (isRelative && (path.empty() || path == "." || path.starts_with("in.xml") || path.starts_with(".zu")));
}

/// The calls of the attack that use another file, the network or a program.
std::vector<std::string> UnexpectedCalls(const Attack& attack)
{
    const TempFolder folder;
    const std::string file = (folder.Folder() / "in.xml").string();
    const std::string traceFile = (folder.Folder() / "trace").string();
    folder.Write(u"in.xml", attack.file(kSize));
    const ChildRun run =
        RunChild({kTracer, folder.Folder(), {}}, {"-f", "-qq", "-e", "trace=%file,%network,%process", "-o", traceFile,
                                                  ZUPM_ATTACKER, std::string(attack.label), file});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.out.starts_with(std::to_string(attack.code) + " ")) << run.out;

    // Before it first touches the file, the program loads itself, its libraries and the resources.
    std::vector<std::string> unexpected;
    bool hasBegun = false;
    std::istringstream trace(folder.Read(u"trace"));
    for (std::string line; std::getline(trace, line);) {
        if (QuotedIn(line) == kMeasured) {
            break;
        }
        const bool isFirst = !hasBegun && line.find("open") != std::string::npos && QuotedIn(line) == file;
        hasBegun = hasBegun || isFirst;
        if (hasBegun && !IsExpected(line, folder.Folder().string())) {
            unexpected.push_back(line);
        }
    }
    EXPECT_TRUE(hasBegun) << "the trace does not show the file";
    return unexpected;
}

class OpenedFiles : public testing::Test {
protected:
    void SetUp() override
    {
        if (!std::filesystem::exists(kTracer)) {
            GTEST_SKIP() << "strace is not installed";
        }
    }
};

TEST_F(OpenedFiles, WhileLoadingEntityTricks_AreOnlyThatFile)
{
    for (const Attack& attack : EntityAttacks()) {
        EXPECT_THAT(UnexpectedCalls(attack), testing::IsEmpty()) << attack.label;
    }
}

TEST_F(OpenedFiles, WhileEditingAndWriting_AreThatFileAndTheOneNextToIt)
{
    constexpr std::array kEdits = {"sections, one changed", "task of many settings changed",
                                   "many tasks, one added and removed"};
    for (const char* label : kEdits) {
        EXPECT_THAT(UnexpectedCalls(*FindAttack(label)), testing::IsEmpty()) << label;
    }
}

}  // namespace
}  // namespace zupm::test
