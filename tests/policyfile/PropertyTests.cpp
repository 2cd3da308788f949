// The three properties: what they give before and after a load, and what becomes of their slots.

#include "PolicyFileTest.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

namespace {

using Getter = HRESULT (IPolicyFile::*)(BSTR*);

class PolicyFileProperties : public PolicyFileTest {};

struct PropertyRow {
    const char* label;
    Getter getter;
    const char16_t* fresh;
    const char16_t* loaded;
};

const PropertyRow kRows[] = {
    {"VersionTask", &IPolicyFile::get_VersionTask, u"0", u"7"},
    {"VersionPolicy", &IPolicyFile::get_VersionPolicy, u"0", u"12"},
    {"PolicyAssignmentList", &IPolicyFile::get_PolicyAssignmentList, u"", u"one;two"},
};

constexpr char kFile[] = "<R><PolicyRoot version='12' AssignmentList='one;two'/><TaskRoot version='7'/></R>";

}  // namespace

TEST_F(PolicyFileProperties, NullSlot_GivesBadArgument)
{
    for (const PropertyRow& row : kRows) {
        EXPECT_EQ((m_file.Object()->*row.getter)(nullptr), result::BadArgument) << row.label;
    }
}

TEST_F(PolicyFileProperties, Slot_GetsANewStringInPlaceOfWhatItHeld)
{
    for (const PropertyRow& row : kRows) {
        OutText slot;
        EXPECT_EQ((m_file.Object()->*row.getter)(slot.Slot()), 0) << row.label;
        EXPECT_FALSE(slot.IsNull()) << row.label << ": an empty text is a string too";
        EXPECT_EQ(slot.Text(), row.fresh) << row.label;
    }
    ASSERT_EQ(LoadText(kFile), 0);
    for (const PropertyRow& row : kRows) {
        OutText slot;
        EXPECT_EQ((m_file.Object()->*row.getter)(slot.Slot()), 0) << row.label;
        EXPECT_EQ(slot.Text(), row.loaded) << row.label;
    }
}

TEST_F(PolicyFileProperties, AssignmentList_KeepsLongAndUnusualText)
{
    const std::u16string list = std::u16string(100'000, u'x') + u"\U0001F600";
    ASSERT_EQ(LoadText("<R><PolicyRoot AssignmentList='" + Utf8(list) + "'/></R>"), 0);
    EXPECT_EQ(m_file.AssignmentList(), (TextResult{0, list}));
}

}  // namespace zupm::test
