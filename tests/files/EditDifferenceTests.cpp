// Before, edits, difference: every edit in every layout changes what it is about and no other byte.
#include <gtest/gtest.h>

#include <tuple>

#include "EditCases.h"
#include "Layouts.h"
#include "tests/support/Difference.h"
#include "tests/support/FixedClock.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TextEdit.h"

namespace zupm::test {

namespace {

class EditTest : public ::testing::TestWithParam<std::tuple<EditCase, Layout>> {
protected:
    [[nodiscard]] static const EditCase& Edit() { return std::get<0>(GetParam()); }
    [[nodiscard]] static const Layout& File() { return std::get<1>(GetParam()); }

    FixedClock m_clock;
    TempFolder m_folder;
    PolicyFileClient m_file;
};

const std::string& CanonicalText()
{
    static const std::string text = ReadBytes(Utf16(ZUPM_TEST_DATA "/agent.xml"));
    return text;
}

std::string Changed(std::string text, const std::vector<Change>& difference)
{
    for (const Change& change : difference) {
        text = ReplaceOnce(std::move(text), change.from, change.to);
    }
    return text;
}

std::string NameOf(const ::testing::TestParamInfo<std::tuple<EditCase, Layout>>& info)
{
    return std::get<0>(info.param).label + "_" + std::get<1>(info.param).label;
}

}  // namespace

TEST_P(EditTest, MakesItsDifferenceAndNoOther)
{
    const std::string before = LaidOut(CanonicalText(), File());
    ASSERT_EQ(m_file.Load(m_folder.Write(u"policy.xml", before)), 0);
    Edit().edit(m_file);
    ASSERT_EQ(m_file.Write(m_folder.Path(u"policy.xml")), 0);
    const std::string written = m_folder.Read(u"policy.xml");
    const std::string expected = LaidOut(Changed(CanonicalText(), Edit().difference), File());
    EXPECT_TRUE(written == expected) << "expected -, written +:\n" << Difference(expected, written);
}

INSTANTIATE_TEST_SUITE_P(Edits, EditTest,
                         ::testing::Combine(::testing::ValuesIn(EditCases()), ::testing::ValuesIn(Layouts())), NameOf);

}  // namespace zupm::test
