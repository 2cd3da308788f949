// What needs a device that is always full, and arguments that are bytes: Windows has neither.
#include "ToolTest.h"

namespace zupm::test {
namespace {

class NativeTool : public ToolTest {};

TEST_F(NativeTool, AFullStandardOutputIsAFailure)
{
    const ToolRun run = RunTool({Folder().Folder(), "/dev/full"}, {"show", "policy.xml"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_EQ(run.messages, "zupolicy: standard output cannot be written\n");
}

TEST_F(NativeTool, RefusesArgumentsThatAreNotUtf8)
{
    const char* const values[] = {"\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"};
    for (const char* value : values) {
        EXPECT_THAT(Tool({"set", "policy.xml", "PRODUCTB2000", "General", "LogLevel", value}),
                    Fails(2, "zupolicy: an argument is not valid UTF-8\n"));
    }
}

}  // namespace
}  // namespace zupm::test
