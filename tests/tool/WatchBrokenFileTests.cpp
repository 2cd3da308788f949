// watch and a file that stays broken.
#include "WatchRun.h"

namespace zupm::test {
namespace {

class WatchBrokenFile : public ToolTest {};

TEST_F(WatchBrokenFile, IsReportedOnceForEachMistake)
{
    // Longer than the tool waits for a writer to finish, and than it waits for its next look.
    constexpr std::chrono::milliseconds kUntilItLooksAgain(2500);
    const std::string sample = Bytes();
    WatchRun watch(Folder(), {"policy.xml", "--exit-after", "1"});
    Folder().Write(u"policy.xml", "<a>");
    watch.WaitForMessage("policy.xml:1:");
    Folder().Write(u"policy.xml", "<b>");
    std::this_thread::sleep_for(kUntilItLooksAgain);
    Folder().Write(u"policy.xml", "\n<c>");
    watch.WaitForMessage("policy.xml:2:");
    Folder().Write(u"policy.xml", sample);
    watch.WaitForMessage("can be read again");
    EXPECT_EQ(Tool({"set", "policy.xml", "PRODUCTA1000", "General", "ScanInterval", "15"}).exitCode, 0);
    const ToolRun run = watch.End();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.messages, MatchesPattern("zupolicy: watching 1 file\n"
                                             "policy\\.xml:1:[0-9]+: [^\n]*\n"
                                             "policy\\.xml:2:[0-9]+: [^\n]*\n"
                                             "policy\\.xml: can be read again\n"));
}

}  // namespace
}  // namespace zupm::test
