// Odd files: each loads, means the same and is written back byte for byte.
#include <gtest/gtest.h>

#include "OddFiles.h"
#include "tests/support/Difference.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TextEdit.h"

namespace zupm::test {

namespace {

class OddFileTest : public ::testing::TestWithParam<OddFile> {
protected:
    TempFolder m_folder;
    PolicyFileClient m_file;
};

std::string NameOf(const ::testing::TestParamInfo<OddFile>& info)
{
    return info.param.label;
}

constexpr char kOutdated[] = "3";

}  // namespace

TEST_P(OddFileTest, WritesBackByteIdenticalWhenItsVersionsAreUpToDate)
{
    const std::string bytes = BytesOf(GetParam(), kCurrentTaskVersion);
    ASSERT_EQ(m_file.Load(m_folder.Write(u"in.xml", bytes)), 0);
    ASSERT_EQ(m_file.Write(m_folder.Path(u"out.xml")), 0);
    const std::string written = m_folder.Read(u"out.xml");
    EXPECT_TRUE(written == bytes) << Difference(bytes, written);
}

TEST_P(OddFileTest, ChangesNothingButTheVersionThatIsOutdated)
{
    ASSERT_EQ(m_file.Load(m_folder.Write(u"in.xml", BytesOf(GetParam(), kOutdated))), 0);
    ASSERT_EQ(m_file.Write(m_folder.Path(u"in.xml")), 0);
    const std::string written = m_folder.Read(u"in.xml");
    const std::string expected = BytesOf(GetParam(), kCurrentTaskVersion);
    EXPECT_TRUE(written == expected) << Difference(expected, written);
}

TEST_P(OddFileTest, HoldsItsVersionsPolicyAndTask)
{
    ASSERT_EQ(m_file.Load(m_folder.Write(u"in.xml", BytesOf(GetParam(), kOutdated))), 0);
    EXPECT_EQ(m_file.VersionPolicy(), (TextResult{0, u"12"}));
    EXPECT_EQ(m_file.VersionTask(), (TextResult{0, u"3"}));
    EXPECT_EQ(m_file.Policy(u"P1").Get(u"S", u"N"), (TextResult{0, GetParam().value}));
    EXPECT_EQ(m_file.FindTask(u"P1", u"T1"), 0);
}

TEST_P(OddFileTest, GivesItsWholeTextAsBuffer)
{
    ASSERT_EQ(m_file.Load(m_folder.Write(u"in.xml", BytesOf(GetParam(), kOutdated))), 0);
    EXPECT_TRUE(m_file.Buffer() == Utf16(ReplaceAll(GetParam().text, "@", kOutdated)));
}

TEST_P(OddFileTest, KeepsItsValueThroughAnObjectAndBack)
{
    ASSERT_EQ(m_file.Load(m_folder.Write(u"in.xml", BytesOf(GetParam(), kOutdated))), 0);
    ASSERT_EQ(m_file.Add(m_file.Policy(u"P1")), 0);
    ASSERT_EQ(m_file.Write(m_folder.Path(u"out.xml")), 0);
    PolicyFileClient again;
    ASSERT_EQ(again.Load(m_folder.Path(u"out.xml")), 0);
    EXPECT_EQ(again.Policy(u"P1").Get(u"S", u"N"), (TextResult{0, GetParam().value}));
}

INSTANTIATE_TEST_SUITE_P(OddFiles, OddFileTest, ::testing::ValuesIn(OddFiles()), NameOf);

}  // namespace zupm::test
