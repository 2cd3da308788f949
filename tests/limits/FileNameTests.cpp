// File names that name no file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

#include "tests/limits/FileNames.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {
namespace {

std::vector<NameRow> Names()
{
    std::vector<NameRow> names = {
        {"empty", u"", false, {result::InvalidName}},
        {"zero inside", std::u16string(u"a\0b", 3), true, {result::InvalidName}},
        {"unpaired surrogate", std::u16string{u'a', 0xD800}, true, {result::InvalidName}},
        {"32,000 letters", std::u16string(32'000, u'x'), true, kNoSuchName},
        {"40,000 letters", std::u16string(40'000, u'x'), true, kNoSuchName},
        {"missing folder", u"none/policy.xml", true, {result::PathNotFound}},
        {"file as a folder", u"in.xml/policy.xml", true, {result::PathNotFound, result::InvalidName}},
        {"separator at the end", u"in.xml/", true, kNoSuchName},
        {"the folder itself", u"", true, kNoSuchName},
        {"the folder above", u"..", true, kNoSuchName},
        {"the root", u"/", false, kNoSuchName},
    };
    std::ranges::move(NamesOfTheSystem(), std::back_inserter(names));
    return names;
}

/// A code of the system in the form of a result.
bool IsSystemCode(HRESULT code)
{
    return (static_cast<std::uint32_t>(code) & 0xFFFF0000u) == 0x80070000u;
}

class FileNames : public testing::Test {
protected:
    FileNames() { m_folder.Write(u"in.xml", "<F><PolicyRoot/><TaskRoot/></F>"); }

    [[nodiscard]] std::u16string PathOf(const NameRow& row) const
    {
        return row.isInFolder ? m_folder.Path(u"") + row.name : row.name;
    }

    TempFolder m_folder;
};

TEST_F(FileNames, NameOfNoFile_CannotBeLoaded)
{
    for (const NameRow& row : Names()) {
        PolicyFileClient file;
        const HRESULT code = file.Load(PathOf(row));
        EXPECT_EQ(std::count(row.codes.begin(), row.codes.end(), code), 1) << row.label << ": " << std::hex << code;
    }
}

TEST_F(FileNames, NameOfNoFile_CannotBeWrittenAndLeavesNothing)
{
    PolicyFileClient file;
    ASSERT_EQ(file.Load(m_folder.Path(u"in.xml")), 0);
    for (const NameRow& row : Names()) {
        // Some devices accept anything.
        const HRESULT code = file.Write(PathOf(row));
        EXPECT_TRUE(code == 0 || IsSystemCode(code)) << row.label << ": " << std::hex << code;
    }
    EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"in.xml"}));
}

}  // namespace
}  // namespace zupm::test
