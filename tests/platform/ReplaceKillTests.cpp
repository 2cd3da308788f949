// A process killed before each system call of a file's replacement. How calls fail is a matter of tests/faults/native.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Files.h"
#include "tests/platform/FaultySystem.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

constexpr std::string_view kOld = "the old bytes";
constexpr std::string_view kNew = "the new bytes, which are more";

/// A file reached through a link, with a mode.
class ReplaceKill : public testing::Test {
protected:
    void Prepare() const
    {
        ::unlink(m_folder.Path("file").c_str());
        ::unlink(m_folder.Path("link").c_str());
        m_folder.Write("file", kOld);
        ASSERT_EQ(::chmod(m_folder.Path("file").c_str(), 0640), 0);
        ASSERT_EQ(::symlink("file", m_folder.Path("link").c_str()), 0);
    }

    /// Replaces the file in a process that dies in place of the call, and returns how that process ended.
    [[nodiscard]] int ReplaceInAProcessKilledAt(int call) const
    {
        const pid_t child = ::fork();
        if (child == 0) {
            const FaultySystem system({.call = call, .oneByOne = true, .kills = true});
            ::_exit(ReplaceFileAtomically(m_folder.Wide("link"), kNew) == result::Success ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return status;
    }

    TestFolder m_folder;
};

TEST_F(ReplaceKill, BeforeAnyCall_LeavesTheOldOrTheNewFileAndAtMostItsTemporary)
{
    for (int call = 0; call < 1000; ++call) {
        Prepare();
        const int status = ReplaceInAProcessKilledAt(call);
        const std::string bytes = m_folder.Read("file");
        ASSERT_TRUE(bytes == kOld || bytes == kNew) << call << ": " << bytes;
        ASSERT_EQ(m_folder.Mode("file"), mode_t{0640}) << call;
        ASSERT_TRUE(m_folder.IsLink("link")) << call;
        const std::vector<std::string> names = m_folder.Names();
        ASSERT_LE(names.size(), 3U) << call;
        if (WIFEXITED(status)) {
            EXPECT_EQ(WEXITSTATUS(status), 0);
            EXPECT_EQ(bytes, kNew);
            EXPECT_EQ(names.size(), 2U) << "a call that returns leaves no temporary";
            EXPECT_GT(call, static_cast<int>(kNew.size())) << "hardly any process was killed";
            return;
        }
        if (names.size() == 3) {
            ::unlink(m_folder.Path(names.front()).c_str());
        }
    }
    FAIL() << "the operation never ends";
}

}  // namespace
}  // namespace zupm::test
