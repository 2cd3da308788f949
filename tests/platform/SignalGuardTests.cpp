// Signals that a failing write raises: they must not end the component's caller.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include "common/PrivateProfile.h"
#include "platform/Files.h"
#include "platform/LogOutput.h"
#include "tests/platform/TestFolder.h"

namespace zupm::test {
namespace {

void LimitFileSize(rlim_t bytes)
{
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

TEST(SignalGuard, FileOverTheProcessesLimit_GivesACodeAndLeavesNoTemporary)
{
    TestFolder folder;
    folder.Write("file", "old");
    ASSERT_EQ(::chmod(folder.Path("file").c_str(), 0666), 0);
    const int code = RunWithoutRights([&] {
        LimitFileSize(100);
        return ReplaceFileAtomically(folder.Wide("new"), std::string(1000, 'x')) == result::FileTooLarge ? 0 : 1;
    });
    EXPECT_EQ(code, 0);
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"file"});
}

TEST(SignalGuard, IniFileOverTheProcessesLimit_IsRefused)
{
    TestFolder folder;
    const int code = RunWithoutRights([&] {
        LimitFileSize(100);
        return WritePrivateProfileStringW(u"S", u"K", std::u16string(1000, u'x'), folder.Wide("x.ini")) ? 1 : 0;
    });
    EXPECT_EQ(code, 0);
    EXPECT_EQ(folder.Names(), std::vector<std::string>{});
}

TEST(SignalGuard, LogLineIntoABrokenPipe_IsDropped)
{
    const int code = RunWithoutRights([] {
        int ends[2];
        if (::pipe(ends) != 0 || ::dup2(ends[1], STDERR_FILENO) < 0 || ::close(ends[0]) != 0 || ::close(ends[1]) != 0) {
            return 2;
        }
        AppendLogLine("", "line\n");
        sigset_t pending;
        return ::sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 0 ? 0 : 1;
    });
    EXPECT_EQ(code, 0);
}

}  // namespace
}  // namespace zupm::test
