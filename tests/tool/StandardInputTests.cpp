// FILE "-", from pipes and in other ways that need a shell.
#include <cstdlib>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;

class StandardInput : public ToolTest {
protected:
    StandardInput() { Folder().Write(u"broken.xml", "<a>\n<b></a>"); }

    /// Runs a shell command in the folder, with the tool as $tool.
    [[nodiscard]] ToolRun Shell(const std::string& command) const
    {
        const std::string line = "cd '" + Folder().Folder().string() + "' && export tool='" ZUPM_TOOL +
                                 "' TMPDIR=\"$PWD/tmp\" && mkdir -p tmp && { " + command + " ; } > out 2> messages";
        const int status = std::system(line.c_str());
        return {WEXITSTATUS(status), Bytes(u"out"), Bytes(u"messages")};
    }
    [[nodiscard]] std::string ShellOut(const std::string& command) const
    {
        const ToolRun run = Shell(command);
        EXPECT_EQ(run.exitCode, 0) << command;
        EXPECT_EQ(run.messages, "") << command;
        return run.out;
    }
};

TEST_F(StandardInput, IsReadByEveryCommandThatReads)
{
    EXPECT_EQ(ShellOut("cat policy.xml | $tool get - PRODUCTA1000 General ScanInterval"), "60\n");
    EXPECT_EQ(ShellOut("$tool get - PRODUCTA1000 General ScanInterval < policy.xml"), "60\n");
    EXPECT_EQ(ShellOut("cat policy.xml | $tool show - | tail -n +2"), ShellOut("$tool show policy.xml | tail -n +2"));
    EXPECT_THAT(ShellOut("cat policy.xml | $tool show - --names --json"), HasSubstr("\"file\": \"-\""));
    EXPECT_EQ(ShellOut("cat policy.xml | $tool check - policy.xml"), "");
    EXPECT_THAT(ShellOut("cat policy.xml | $tool check - --json"), HasSubstr("\"settings\": 18"));
    EXPECT_EQ(ShellOut("cat policy.xml | $tool diff - policy.xml"), "");
    EXPECT_EQ(ShellOut("cat policy.xml | $tool diff policy.xml -"), "");
    EXPECT_EQ(ShellOut("cat policy.xml | $tool query - --name ScanInterval"),
              "-: policy PRODUCTA1000 General/ScanInterval: \"60\"\n");
    EXPECT_THAT(ShellOut("cat policy.xml | $tool export-ini - PRODUCTA1000 - --task '{task-1}'"), HasSubstr("Hour=2"));
}

TEST_F(StandardInput, IsTheSourceOfAnEditWithAnotherOutput)
{
    EXPECT_EQ(ShellOut("cat policy.xml | $tool set - PRODUCTA1000 General ScanInterval 61 --output - |"
                       " $tool get - PRODUCTA1000 General ScanInterval"),
              "61\n");
    EXPECT_THAT(Shell("cat policy.xml | $tool set - PRODUCTA1000 General ScanInterval 61"),
                Fails(2,
                      "zupolicy: -: standard input cannot be replaced; set and remove read it with --output; a file of "
                      "that name is ./-\n"));
    const ToolRun run = Shell("echo '{\"edit\":\"absent\",\"softwareId\":\"X\"}' | $tool apply - --edits -");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.messages, HasSubstr("-: standard input cannot be replaced"));
}

TEST_F(StandardInput, IsNamedInMessages)
{
    EXPECT_THAT(Shell("cat broken.xml | $tool check -"), Fails(3, "-:2:6: mismatched tag\n"));
    for (const char* const command : {"get - P S N", "show -", "diff - policy.xml"}) {
        EXPECT_THAT(Shell("cat broken.xml | $tool " + std::string(command)),
                    Fails(3, "zupolicy: -:2:6: mismatched tag [SyntaxError, 0xFFFFFBAE]\n"));
    }
    EXPECT_THAT(Shell("cat policy.xml | $tool get - PRODUCTX S N"),
                Fails(1, testing::StartsWith("zupolicy: -: policy PRODUCTX: There is no product policy")));
    EXPECT_THAT(Shell("cat broken.xml | $tool show - --json").out, HasSubstr("\"file\": \"-\", \"line\": 2"));
}

TEST_F(StandardInput, IsRefusedWhenItCannotBeReadOrWasRead)
{
    EXPECT_THAT(Shell("$tool diff - - < policy.xml"), Fails(2, "zupolicy: -: standard input can be read only once\n"));
    EXPECT_THAT(Shell("$tool show - <&-"), Fails(3, "zupolicy: -: standard input cannot be read\n"));
    EXPECT_THAT(Shell("$tool show - < ."), Fails(3, "zupolicy: -: standard input cannot be read\n"));
    EXPECT_THAT(Shell("$tool check policy.xml --rules - < ."),
                Fails(3, "zupolicy: -: standard input cannot be read\n"));
    EXPECT_THAT(Shell("$tool check policy.xml --rules - < /dev/zero"),
                Fails(3, "zupolicy: -: the rules are larger than 16 MiB\n"));
    EXPECT_THAT(Shell("TMPDIR=/nonexistent $tool show - < policy.xml"),
                Fails(3, testing::StartsWith("zupolicy: -: a temporary file cannot be used: ")));
    EXPECT_THAT(Shell("ulimit -f 1; $tool show - < policy.xml"),
                Fails(3, "zupolicy: -: the temporary copy of standard input cannot be written\n"));
    EXPECT_EQ(Shell("$tool show - < /dev/null").exitCode, 3);
}

TEST_F(StandardInput, LeavesNothingOnDiskAlsoWhenTheRunIsKilled)
{
    // The tool waits for the rest of a pipe that the shell keeps open.
    const ToolRun run = Shell(
        "mkfifo pipe && { $tool show - < pipe & } && exec 9> pipe && cat policy.xml >&9 && sleep 0.3 &&"
        " kill -9 $! && wait; ls tmp");
    EXPECT_EQ(run.out, "");
}

TEST_F(StandardInput, AFileOfThatNameHasAFolder)
{
    Folder().Write(u"-", Bytes());
    EXPECT_EQ(Out({"get", "./-", "PRODUCTA1000", "General", "ScanInterval"}), "60\n");
    EXPECT_EQ(Out({"set", "./-", "PRODUCTA1000", "General", "ScanInterval", "61"}), "");
}

}  // namespace
}  // namespace zupm::test
