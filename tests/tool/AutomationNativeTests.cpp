// The commands of docs/automation.md, as the page has them.
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <regex>
#include <string>

#include "ToolTest.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class Automation : public ToolTest {
protected:
    /// Runs a shell command in the folder, with the tool as $tool; its exit code.
    [[nodiscard]] int Shell(const std::string& command) const
    {
        const int status =
            std::system(("cd '" + Folder().Folder().string() + "' && tool='" ZUPM_TOOL "' && " + command).c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /// The first block of commands after a mark.
    [[nodiscard]] static std::string Block(const std::string& mark)
    {
        const std::string page = ReadBytes(std::filesystem::path(ZUPM_AUTOMATION).u16string());
        const std::size_t begin = page.find("\n    ", page.find(mark));
        EXPECT_NE(page.find(mark), page.npos) << mark;
        // A block may have empty lines; what follows it has no indentation.
        std::size_t end = page.find("\n\n", begin);
        while (end != page.npos && page.compare(end, 6, "\n\n    ") == 0) {
            end = page.find("\n\n", end + 2);
        }
        return std::regex_replace(page.substr(begin, end - begin), std::regex("\n    "), "\n");
    }
    /// Runs a block of the page, then a command, with the tool of this build; the exit code of both.
    [[nodiscard]] int RunBlock(const std::string& mark, const std::string& command = "true") const
    {
        Folder().Write(u"block.sh", Block(mark) + "\n" + command + "\n");
        return Shell(
            "mkdir -p bin && ln -sf \"$tool\" bin/zupolicy && HOME=\"$PWD\" PATH=\"$PWD/bin:$PATH\" "
            "GIT_PAGER=cat sh -e block.sh > out 2> messages");
    }
};

TEST_F(Automation, AJobChecksAllFilesAndReportsWhatIsWrong)
{
    Folder().Write(u"rules.json", R"({"properties": {"policies": {"required": ["PRODUCTA1000"]}}})");
    EXPECT_EQ(RunBlock("## Checks before a merge"), 0) << Bytes(u"report.txt") << Bytes(u"messages");
    EXPECT_EQ(Bytes(u"out"), "all files keep the rules\n");
    Folder().Write(u"rules.json", R"({"properties": {"policies": {"required": ["PRODUCTX"]}}})");
    EXPECT_EQ(RunBlock("## Checks before a merge"), 3);
    EXPECT_THAT(Bytes(u"out"), MatchesPattern("a file is broken, .*:\n[^]*PRODUCTX[^]*"));
    EXPECT_EQ(Shell("rm rules.json"), 0);
    EXPECT_EQ(RunBlock("## Checks before a merge"), 3);
}

TEST_F(Automation, RestoreUndoesAChange)
{
    const std::string before = Bytes(u"policy.xml");
    EXPECT_EQ(RunBlock("## Backup and undo"), 0) << Bytes(u"messages");
    EXPECT_EQ(Bytes(u"policy.xml"), before);
    EXPECT_THAT(Bytes(u"out"), HasSubstr("policy.xml: restored from policy.xml.bak, backup policy.xml.bak.1\n"));
    EXPECT_EQ(Shell("touch -d '40 days ago' policy.xml.bak"), 0);
    EXPECT_EQ(RunBlock("Keep those of the last 30 days"), 0);
    EXPECT_FALSE(Folder().Has(u"policy.xml.bak"));
    EXPECT_TRUE(Folder().Has(u"policy.xml.bak.1"));
}

TEST_F(Automation, AnEntryMovesToAnotherFile)
{
    EXPECT_EQ(Shell("cp policy.xml other.xml && \"$tool\" set other.xml PRODUCTA1000 General ScanInterval 99"), 0);
    EXPECT_EQ(RunBlock("## Moving a policy to other files"), 0) << Bytes(u"messages");
    EXPECT_THAT(Bytes(u"out"), HasSubstr("other.xml: changed, backup other.xml.bak\n"));
}

TEST_F(Automation, ASecretIsInTheFileAlone)
{
    ::setenv("PROXY_PASSWORD", "geheim", 1);
    EXPECT_EQ(RunBlock("## Secrets"), 0) << Bytes(u"messages");
    ::unsetenv("PROXY_PASSWORD");
    EXPECT_THAT(Tool({"get", "policy.xml", "PRODUCTA1000", "Proxy", "Password"}).out, "geheim\n");
    EXPECT_THAT(Bytes(u"change.txt"), HasSubstr("***"));
    EXPECT_THAT(Bytes(u"shown.txt"), HasSubstr("***"));
    EXPECT_THAT(Bytes(u"change.txt") + Bytes(u"shown.txt") + Bytes(u"messages"), Not(HasSubstr("geheim")));
}

class Git : public Automation {
protected:
    Git()
    {
        EXPECT_EQ(Shell("export HOME=\"$PWD\" && git init -q && git config user.name n && git config user.email e@x && "
                        "echo '*.xml diff=zupolicy' > .gitattributes && git add .gitattributes policy.xml && "
                        "git commit -qm one"),
                  0);
        EXPECT_EQ(Shell("$tool set policy.xml PRODUCTA1000 General ScanInterval 15"), 0);
    }
    /// Runs a block of the page, then a command; the output of both.
    [[nodiscard]] std::string AfterBlock(const std::string& mark, const std::string& command) const
    {
        EXPECT_EQ(RunBlock(mark, command), 0) << Bytes(u"messages");
        return Bytes(u"out");
    }
};

TEST_F(Git, ExternalDiff_PrintsWhatTheFilesMean)
{
    const std::string out = AfterBlock("### Differences as edits", "git diff");
    EXPECT_THAT(out, HasSubstr("\n~ policy PRODUCTA1000 General/ScanInterval: \"60\" -> \"15\"\n"));
    EXPECT_THAT(out, Not(HasSubstr("policyVersion")));
    EXPECT_THAT(out, testing::StartsWith("policy.xml\n"));
    // A file that is new, or gone, has nothing to compare with.
    EXPECT_EQ(Shell("cp policy.xml other.xml && git add other.xml && git rm -q --cached policy.xml"), 0);
    EXPECT_THAT(AfterBlock("### Differences as edits", "git diff --cached --no-renames"),
                testing::AllOf(HasSubstr("other.xml\nthe file is new\n"), HasSubstr("policy.xml\nthe file is gone\n")));
}

TEST_F(Git, TextForm_GivesGitsOwnDiff)
{
    const std::string out = AfterBlock("### Git's own differences", "git diff");
    EXPECT_THAT(out, HasSubstr("\n-"));
    EXPECT_THAT(out, testing::AllOf(MatchesPattern("[^]*\n-[^\n]*ScanInterval[^\n]*60\n[^]*"),
                                    MatchesPattern("[^]*\n\\+[^\n]*ScanInterval[^\n]*15\n[^]*")));
    EXPECT_THAT(out, Not(HasSubstr("\n-File")));
}

TEST_F(Git, Difftool_RunsDiff)
{
    EXPECT_THAT(AfterBlock("### git difftool", "git difftool --no-prompt --tool=zupolicy"),
                HasSubstr("~ policy PRODUCTA1000 General/ScanInterval: \"60\" -> \"15\"\n"));
    EXPECT_EQ(Shell("cp policy.xml other.xml && git add other.xml && git rm -q --cached policy.xml"), 0);
    EXPECT_THAT(AfterBlock("### git difftool", "git difftool --cached --no-renames --no-prompt --tool=zupolicy"),
                testing::AllOf(HasSubstr("other.xml is new\n"), HasSubstr("policy.xml is gone\n")));
    EXPECT_EQ(Bytes(u"messages"), "");
}

TEST_F(Git, ARepositorysHook_RefusesBrokenFiles)
{
    Folder().Write(u"policy.xml", "<a>");
    (void)AfterBlock("### A hook", "git add policy.xml; ! git commit -qm broken");
    EXPECT_THAT(Bytes(u"messages"), HasSubstr("policy.xml:1:"));
    EXPECT_EQ(Shell("git show HEAD:policy.xml > committed"), 0);
    EXPECT_NE(Bytes(u"committed"), "<a>");
    // A file whose name looks like an option is checked like others.
    EXPECT_EQ(Shell("git checkout -q HEAD policy.xml && cp policy.xml ./--json.xml && git add -- --json.xml && "
                    "export HOME=\"$PWD\" PATH=\"$PWD/bin:$PATH\" && git commit -qm dashes 2> messages"),
              0)
        << Bytes(u"messages");
}

}  // namespace
}  // namespace zupm::test
