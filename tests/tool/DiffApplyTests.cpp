// What diff prints, apply makes.
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>

#include "EditsTest.h"
#include "RandomFile.h"
#include "tests/support/Effort.h"

namespace zupm::test {
namespace {

using testing::HasSubstr;

class DiffApply : public EditsTest {
protected:
    /// The edits that lead from one file to another.
    [[nodiscard]] std::string Edits(const std::string& before, const std::string& after) const
    {
        const ToolRun run = Tool({"diff", before, after, "--ignore-versions", "--json"});
        EXPECT_EQ(run.messages, "");
        EXPECT_EQ(run.exitCode, run.out.empty() ? 0 : 1);
        return run.out;
    }
    [[nodiscard]] std::filesystem::path File(const char* name) const { return Folder().Folder() / name; }

    void ExpectNothingLeftToDo(const std::string& edits) const
    {
        const std::string bytes = Bytes(u"old.xml");
        const auto time = std::filesystem::last_write_time(File("old.xml")) - std::chrono::hours(48);
        std::filesystem::last_write_time(File("old.xml"), time);
        const ToolRun again = ApplyTo({"old.xml"}, edits);
        EXPECT_EQ(again.exitCode, 0) << again.messages;
        EXPECT_THAT(again.out, testing::StartsWith("old.xml: unchanged\n"));
        EXPECT_EQ(Bytes(u"old.xml"), bytes);
        EXPECT_EQ(std::filesystem::last_write_time(File("old.xml")), time);
    }
};

TEST_F(DiffApply, RandomFiles_BecomeEachOther)
{
    const auto pairs = static_cast<std::uint32_t>(Effort("ZUPM_RANDOM_PAIRS", 15));
    for (std::uint32_t pair = 0; pair < pairs && !HasFailure(); ++pair) {
        SCOPED_TRACE("seeds " + std::to_string(2 * pair) + " and " + std::to_string(2 * pair + 1));
        Folder().Write(u"old.xml", RandomFile(2 * pair).Make());
        Folder().Write(u"new.xml", RandomFile(2 * pair + 1).Make());
        const std::string edits = Edits("old.xml", "new.xml");
        std::istringstream lines(edits);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_TRUE(nlohmann::json::accept(line)) << line;
        }
        const ToolRun run = ApplyTo({"old.xml"}, edits);
        EXPECT_EQ(run.exitCode, 0) << run.messages;
        EXPECT_EQ(Differences("old.xml", "new.xml"), "");
        ExpectNothingLeftToDo(edits);
    }
}

TEST_F(DiffApply, TheDryRun_PrintsWhatDiffPrints)
{
    Folder().Write(u"old.xml", RandomFile(100).Make());
    Folder().Write(u"new.xml", RandomFile(101).Make());
    const std::string edits = Edits("old.xml", "new.xml");
    const std::string differences = Differences("old.xml", "new.xml");
    ASSERT_NE(differences, "");
    EXPECT_THAT(ApplyTo({"old.xml"}, edits, {"--dry-run"}).out, HasSubstr("\n" + differences));
}

TEST_F(DiffApply, EveryRandomPairDiffers)
{
    // Otherwise the property above would hold for want of anything to do.
    std::size_t edits = 0;
    for (std::uint32_t pair = 0; pair < 5; ++pair) {
        Folder().Write(u"old.xml", RandomFile(2 * pair).Make());
        Folder().Write(u"new.xml", RandomFile(2 * pair + 1).Make());
        const std::string text = Edits("old.xml", "new.xml");
        edits += static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    }
    EXPECT_GT(edits, 30U);
}

}  // namespace
}  // namespace zupm::test
