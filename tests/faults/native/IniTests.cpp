// A task's dump into an INI file: a line at a time, each of them in the file whole or not at all.
#include "tests/faults/native/FailingSystemTest.h"

namespace zupm::test {

namespace {

constexpr std::string_view kOtherLines = "; not ours\r\n[Other]\r\nkept=1\r\n";

HRESULT WriteIni(World& world)
{
    return world.task.Object()->WriteTaskDataToIniFile(world.iniPath.Get());
}

void MakeIni(World& world)
{
    world.folder.Write(kIniName, kOtherLines);
}

/// Every line is one that a dump without failures has, and they are in its order.
void ExpectLinesOf(std::string_view whole, std::string_view text)
{
    while (!text.empty()) {
        const std::size_t end = text.find("\r\n");
        ASSERT_NE(end, text.npos) << "a line without its end";
        const std::string_view line = text.substr(0, end + 2);
        const std::size_t place = whole.find(line);
        ASSERT_NE(place, whole.npos) << line;
        whole.remove_prefix(place + line.size());
        text.remove_prefix(line.size());
    }
}

std::string WholeDump(World& world)
{
    const TempFolder elsewhere;
    const Bstr path(elsewhere.Path(kIniName));
    EXPECT_EQ(world.task.Object()->WriteTaskDataToIniFile(path.Get()), 0);
    return elsewhere.Read(kIniName);
}

/// The first line that cannot be written ends the identity; a setting that cannot be is left out.
void HasWholeLines(World& world, std::string_view others, const Outcome& outcome)
{
    EXPECT_TRUE(outcome.code == S_OK || outcome.code == result::GeneralFailure) << outcome.code;
    ExpectNoTemporary(world, outcome);
    const std::string text = world.folder.Has(kIniName) ? world.folder.Read(kIniName) : std::string(others);
    ASSERT_TRUE(text.starts_with(others));
    const std::string whole = WholeDump(world);
    ExpectLinesOf(whole, std::string_view(text).substr(others.size()));
    if (outcome.code == S_OK) {
        EXPECT_TRUE(std::string_view(text).substr(others.size()).starts_with(whole.substr(0, whole.find("\r\n[") + 2)))
            << "the identity is whole";
    }
    if (outcome.failedCall.empty()) {
        EXPECT_EQ(text, std::string(others) + whole);
    }
}

void NewFileHasWholeLines(World& world, const Sight& before, const Outcome& outcome)
{
    HasWholeLines(world, {}, outcome);
    ExpectNothingLost(world, before);
}

void OldFileHasWholeLines(World& world, const Sight& before, const Outcome& outcome)
{
    HasWholeLines(world, kOtherLines, outcome);
    ExpectNothingLost(world, before);
}

const FileOperation kOperations[] = {
    {.name = "NewFile", .run = WriteIni, .check = NewFileHasWholeLines, .stride = 5, .errors = 2},
    {.name = "OldFile", .run = WriteIni, .check = OldFileHasWholeLines, .prepare = MakeIni, .stride = 7, .errors = 2},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(WriteTaskDataToIniFile, FailingSystem, testing::ValuesIn(kOperations), NameOf);

}  // namespace zupm::test
