// What only a POSIX system has to watch.
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "WatchRun.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

class NativeWatch : public ToolTest {
protected:
    [[nodiscard]] fs::path At(const char* name) const { return Folder().Folder() / name; }
    [[nodiscard]] int Shell(const std::string& command) const
    {
        const int status =
            std::system(("cd '" + Folder().Folder().string() + "' && tool='" ZUPM_TOOL "' && " + command).c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    void Set(const char* file, const char* value) const
    {
        EXPECT_EQ(Tool({"set", file, "PRODUCTA1000", "General", "ScanInterval", value}).exitCode, 0);
    }
};

TEST_F(NativeWatch, NameThatLeadsThroughTwoLinks_IsFollowedAnew)
{
    // As a cluster hands out configuration: the link in the middle is replaced.
    fs::create_directory(At("one"));
    fs::create_directory(At("two"));
    fs::copy_file(At("policy.xml"), At("one/p.xml"));
    fs::copy_file(At("policy.xml"), At("two/p.xml"));
    Set("two/p.xml", "15");
    fs::create_symlink("one", At("current"));
    fs::create_symlink("current/p.xml", At("link.xml"));
    WatchRun watch(Folder(), {"link.xml", "--exit-after", "2"});
    fs::create_symlink("two", At("next"));
    fs::rename(At("next"), At("current"));
    watch.WaitForOutput("-> \"15\"");
    Set("two/p.xml", "16");
    const ToolRun run = watch.End();
    EXPECT_EQ(run.out,
              "link.xml: ~ policy PRODUCTA1000 General/ScanInterval: \"60\" -> \"15\"\n"
              "link.xml: ~ policy PRODUCTA1000 General/ScanInterval: \"15\" -> \"16\"\n");
}

TEST_F(NativeWatch, FolderThatComesLater_IsWaitedFor)
{
    WatchRun watch(Folder(), {"later/p.xml", "--exit-after", "1"});
    fs::create_directory(At("later"));
    fs::copy_file(At("policy.xml"), At("later/p.xml"));
    watch.WaitForMessage("can be read again");
    Set("later/p.xml", "15");
    EXPECT_EQ(watch.End().exitCode, 0);
}

TEST_F(NativeWatch, AnotherFileOfTheSameSizeAndTime_IsNoticed)
{
    fs::copy_file(At("policy.xml"), At("other.xml"));
    Set("other.xml", "61");
    fs::last_write_time(At("other.xml"), fs::last_write_time(At("policy.xml")));
    ASSERT_EQ(fs::file_size(At("other.xml")), fs::file_size(At("policy.xml")));
    WatchRun watch(Folder(), {"policy.xml", "--exit-after", "1"});
    // Until then the first state is read a second time in any case.
    std::this_thread::sleep_for(std::chrono::milliseconds(3000));
    fs::rename(At("other.xml"), At("policy.xml"));
    EXPECT_THAT(watch.End().out, HasSubstr("\"60\" -> \"61\""));
}

TEST_F(NativeWatch, AKeyEndsIt_AndSoDoesAClosedOutput)
{
    EXPECT_EQ(Shell("timeout --preserve-status -s INT 1 \"$tool\" watch policy.xml > out 2> messages"), 0);
    WatchRun watch(Folder(), {"policy.xml"}, "/dev/full");
    Set("policy.xml", "15");
    const ToolRun run = watch.End();
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.messages, HasSubstr("writing to standard output failed"));
}

TEST_F(NativeWatch, Waiting_CostsNoProcessorTime)
{
    // A loop that never sleeps would use up its second of processor time.
    EXPECT_EQ(Shell("sh -c 'ulimit -t 1; \"$0\" watch policy.xml --timeout 4' \"$tool\" > out 2> messages"), 1);
}

}  // namespace
}  // namespace zupm::test
