// restore: which backup is put back, what happens to the present file, and the list of backups.
#include <nlohmann/json.hpp>

#include "ToolTest.h"
#include "platform/HeldFile.h"

namespace zupm::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class Restore : public ToolTest {
protected:
    void SetInterval(const std::string& value, const std::vector<std::string>& options = {"--backup"}) const
    {
        std::vector<std::string> arguments = {"set", "policy.xml", "PRODUCTA1000", "General", "ScanInterval", value};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(Out(arguments), "");
    }
};

TEST_F(Restore, TwoRestores_GiveTheFirstStateAgain)
{
    const std::string first = Bytes();
    SetInterval("15");
    const std::string second = Bytes();
    EXPECT_EQ(Out({"restore", "policy.xml"}), "policy.xml: restored from policy.xml.bak, backup policy.xml.bak.1\n");
    EXPECT_EQ(Bytes(), first) << "byte for byte";
    EXPECT_EQ(Bytes(u"policy.xml.bak.1"), second);
    const json report = json::parse(Out({"restore", "policy.xml", "--json"}));
    EXPECT_EQ(report, (json{{"schema", 1},
                            {"file", "policy.xml"},
                            {"dryRun", false},
                            {"changed", true},
                            {"restored", "policy.xml.bak.1"},
                            {"backup", "policy.xml.bak.2"}}));
    EXPECT_EQ(Bytes(), second);
    EXPECT_EQ(Bytes(u"policy.xml.bak"), first) << "backups stay";
}

TEST_F(Restore, AnyBackupOfTheList_CanBeChosen)
{
    const std::string first = Bytes();
    SetInterval("15");
    SetInterval("16");
    const json list = json::parse(Out({"restore", "policy.xml", "--list", "--json"}));
    ASSERT_EQ(list.at("backups").size(), 2U);
    EXPECT_EQ(list.at("backups")[0].at("file"), "policy.xml.bak.1");
    EXPECT_EQ(list.at("backups")[1].at("file"), "policy.xml.bak");
    EXPECT_EQ(list.at("backups")[1].at("size"), first.size());
    EXPECT_THAT(Out({"restore", "policy.xml", "--list"}),
                MatchesPattern("20[0-9]{2}-[01][0-9]-[0-3][0-9]T[0-2][0-9]:[0-5][0-9]:[0-6][0-9]Z  [0-9]+  "
                               "policy\\.xml\\.bak\\.1\n[^\n]*  policy\\.xml\\.bak\n"));
    EXPECT_EQ(Out({"restore", "policy.xml", "--from", "policy.xml.bak", "-q"}), "");
    EXPECT_EQ(Bytes(), first);
    EXPECT_THAT(Tool({"restore", "policy.xml", "--from", "policy.xml"}),
                Fails(3, "zupolicy: policy.xml: is no backup of policy.xml (--list names them)\n"));
    EXPECT_THAT(Tool({"restore", "policy.xml", "--from", ""}), Fails(3, HasSubstr("is no backup of policy.xml")));
}

TEST_F(Restore, TheLargestNumber_IsTheNewestBackup)
{
    // .2 is missing, .10 comes after .9, and what only looks like a number is no backup.
    for (const char16_t* name :
         {u"policy.xml.bak", u"policy.xml.bak.9", u"policy.xml.bak.10", u"policy.xml.bak.011", u"policy.xml.bak.12x",
          u"policy.xml.bak.", u"policy.xml.bakx", u"a.policy.xml.bak.99", u"policy.xml.bak.99999999999"}) {
        Folder().Write(name, SmallFile(""));
    }
    std::filesystem::create_directory(Folder().Folder() / "policy.xml.bak.13");
    Folder().Write(u"policy.xml.bak.10", "<F/>");
    EXPECT_EQ(Out({"restore", "policy.xml"}),
              "policy.xml: restored from policy.xml.bak.10, backup policy.xml.bak.14\n");
    EXPECT_EQ(Bytes(), "<F/>");
}

TEST_F(Restore, DryRun_ForeseesAndWritesNothing)
{
    SetInterval("15");
    const std::vector<std::string> names = Folder().Names();
    const std::string before = Bytes();
    EXPECT_EQ(Out({"restore", "policy.xml", "-n"}), "policy.xml: would be restored from policy.xml.bak\n");
    const std::string diff = Out({"restore", "policy.xml", "-n", "--diff", "-q"});
    EXPECT_THAT(diff, testing::StartsWith("--- policy.xml\n+++ policy.xml\n@@ -"));
    EXPECT_THAT(diff, HasSubstr("\n-            <Setting name=\"ScanInterval\">15</Setting>\n"));
    EXPECT_THAT(diff, HasSubstr("\n+            <Setting name=\"ScanInterval\">60</Setting>\n"));
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(Folder().Names(), names);
}

TEST_F(Restore, AFileThatIsAsItsBackup_IsNotWritten)
{
    SetInterval("15");
    Folder().Write(u"policy.xml", Bytes(u"policy.xml.bak"));
    const ToolRun run = Tool({"restore", "policy.xml", "-v"});
    EXPECT_EQ(run.out, "policy.xml: unchanged, as policy.xml.bak\n");
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(Tool({"restore", "policy.xml", "-v", "--json"}).messages, "policy.xml: unchanged\n");
    EXPECT_FALSE(Folder().Has(u"policy.xml.bak.1"));
}

TEST_F(Restore, ABrokenFile_CanBeRestored)
{
    const std::string first = Bytes();
    SetInterval("15", {"--backup=.old"});
    Folder().Write(u"policy.xml", "<broken");
    const ToolRun run = Tool({"restore", "policy.xml", "--backup=.old", "-v"});
    EXPECT_EQ(run.out, "policy.xml: restored from policy.xml.old, backup policy.xml.old.1\n");
    EXPECT_EQ(run.messages, "") << "the report says it";
    EXPECT_EQ(Bytes(), first);
    // The broken one is the newest backup now.
    EXPECT_THAT(
        Tool({"restore", "policy.xml", "--backup=.old"}),
        Fails(3, MatchesPattern("zupolicy: policy\\.xml\\.old\\.1:1:[0-9]+: .*; --force restores it all the same\n")));
    EXPECT_EQ(Bytes(), first);
    EXPECT_EQ(Tool({"restore", "policy.xml", "--backup=.old", "--force", "-v", "--json"}).messages,
              "policy.xml: changed\n");
    EXPECT_EQ(Bytes(), "<broken");
}

TEST_F(Restore, NoBackup_IsAFailure)
{
    EXPECT_THAT(Tool({"restore", "policy.xml"}), Fails(3, "zupolicy: policy.xml: there is no backup policy.xml.bak\n"));
    const ToolRun run = Tool({"restore", "policy.xml", "--json"});
    EXPECT_EQ(json::parse(run.out).at("error").at("exit"), 3);
    EXPECT_EQ(Out({"restore", "policy.xml", "--list"}), "");
    EXPECT_EQ(Tool({"restore", "missing.xml"}).exitCode, 3);
    EXPECT_THAT(Tool({"restore", "policy.xml", "--backup=a/b"}), Fails(2, HasSubstr("not a path")));
}

TEST_F(Restore, TheLockOfAnotherEditor_IsWaitedFor)
{
    SetInterval("15");
    const std::string before = Bytes();
    HeldFile other;
    ASSERT_EQ(other.Open(Folder().Path(u"policy.xml")), result::Success);
    ASSERT_EQ(other.TryLock(), result::Success);
    EXPECT_THAT(Tool({"restore", "policy.xml", "--lock-timeout", "0"}),
                Fails(6, "zupolicy: policy.xml: another process is editing it (--lock-timeout)\n"));
    EXPECT_EQ(Bytes(), before);
    other.Close();
    EXPECT_EQ(Tool({"restore", "policy.xml", "--lock-timeout", "0"}).exitCode, 0);
}

}  // namespace
}  // namespace zupm::test
