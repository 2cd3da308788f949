// Product policies bound from XML text: what AddPolicy makes of the text that an object answers.
#include "tests/policy/PolicyTest.h"

namespace zupm::test {

namespace {

class ProductText : public PolicyTest {
protected:
    /// Adds an object that answers `data`, as software ID "A", to a file with one empty policy.
    HRESULT Add(std::u16string_view data)
    {
        LoadPolicies("<Policy>\n</Policy>\n");
        ForeignProduct product({0, u"A"}, {0, std::u16string(data)});
        static_cast<void>(m_log.Take());
        const HRESULT code = m_file.Object()->AddPolicy(&product, 1);
        EXPECT_EQ(product.References(), 0U);
        return code;
    }
    /// Every element that the policy holds now, as text.
    [[nodiscard]] std::string Products() const
    {
        const std::string buffer = Utf8(m_file.Buffer().value());
        const std::size_t start = buffer.find('\n', buffer.find("<Policy ")) + 1;
        return buffer.substr(start, buffer.find("</Policy>") - start);
    }
};

using LogLines = std::vector<LogLine>;

struct FoundRow {
    const char* label;
    const char16_t* text;
    const char* products;
};

constexpr FoundRow kFound[] = {
    {"the usual form", u"<PolicyData><Policy><Product SoftwareID='A' n='1'/></Policy></PolicyData>",
     "<Product SoftwareID='A' n='1'/>\n"},
    {"any root name", u"<x><Policy><Product SoftwareID='A'/></Policy></x>", "<Product SoftwareID='A'/>\n"},
    {"a product without the ID is passed over",
     u"<x><Policy><Product n='1'/><Product SoftwareID='A' n='2'/></Policy></x>", "<Product SoftwareID='A' n='2'/>\n"},
    {"policies without a product are passed over",
     u"<x><Policy/><Policy><Product/></Policy><Policy><Product SoftwareID='A' n='3'/></Policy></x>",
     "<Product SoftwareID='A' n='3'/>\n"},
    {"the first product counts, whatever its ID",
     u"<x><Policy><Product SoftwareID='B'/><Product SoftwareID='A'/></Policy></x>", "<Product SoftwareID='B'/>\n"},
    {"elements of other names are passed over",
     u"<x><policy><Product SoftwareID='A' n='1'/></policy><Policy><product SoftwareID='C' n='2'/>"
     u"<Product SoftwareID='A' n='3'/></Policy></x>",
     "<Product SoftwareID='A' n='3'/>\n"},
    {"an element before it with the same ID is taken in its place",
     u"<x><Policy><Other SoftwareID='A' n='1'/><Product SoftwareID='A' n='2'/></Policy></x>",
     "<Other SoftwareID='A' n='1'/>\n"},
    {"an empty ID is an ID", u"<x><Policy><Product SoftwareID=''/></Policy></x>", "<Product SoftwareID=''/>\n"},
};

constexpr const char16_t* kNotFound[] = {
    u"<PolicyData/>",
    u"<PolicyData><Policy/></PolicyData>",
    u"<PolicyData><Policy><Product/></Policy></PolicyData>",
    u"<PolicyData><Policy><product SoftwareID='A'/></Policy></PolicyData>",
    u"<PolicyData><Product SoftwareID='A'/></PolicyData>",
    u"<Policy><Product SoftwareID='A'/></Policy>",
    u"<PolicyData><Group><Policy><Product SoftwareID='A'/></Policy></Group></PolicyData>",
};

}  // namespace

TEST_F(ProductText, TheFirstProductWithAnIdInAnyPolicyIsUsed)
{
    for (const FoundRow& row : kFound) {
        EXPECT_EQ(Add(row.text), 0) << row.label;
        EXPECT_EQ(Products(), row.products) << row.label;
    }
}

TEST_F(ProductText, WithoutAProductThatHasAnIdIsRefused)
{
    for (const char16_t* text : kNotFound) {
        EXPECT_EQ(Add(text), result::ElementMissing) << Utf8(text);
        EXPECT_EQ(m_log.Take(), LogLines{}) << Utf8(text);
        EXPECT_EQ(m_file.VersionPolicy(), Ok(u"0")) << Utf8(text);
    }
}

TEST_F(ProductText, ThatIsMalformedIsRefusedWithTwoLogLines)
{
    EXPECT_EQ(Add(u"<PolicyData>\n <Policy></PolicyData>"), result::SyntaxError);
    EXPECT_EQ(TakeErrorInformation().present, true);
    const std::vector<LogLine> lines = m_log.Take();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].level, 7);
    EXPECT_EQ(lines[0].subsystem, 0x800U);
    EXPECT_EQ(
        lines[0].text.rfind("CPolicyData::Initialize() - XML parsing exception occurred - syntax error at line(2), "
                            "column(",
                            0),
        0U)
        << lines[0].text;
    EXPECT_EQ(lines[1], (LogLine{7, "CPolicyData::Initialize() - Initalize policy file failed"}));
    EXPECT_EQ(m_file.VersionPolicy(), Ok(u"0"));
}

TEST_F(ProductText, OtherFormsOfMalformedTextAreRefusedToo)
{
    for (const char16_t* text : {u"", u"no markup", u"<a>", u"<a/><b/>", u"<a b=c/>", u"<a>&undefined;</a>"}) {
        EXPECT_EQ(Add(text), result::SyntaxError) << Utf8(text);
        EXPECT_EQ(m_log.Take().size(), 2U) << Utf8(text);
    }
}

TEST_F(ProductText, DoubledNamesInIt_AreLoggedAndKept)
{
    const char16_t* text =
        u"<x><Policy><Product SoftwareID='A'><Section name='S'/><Section name='S'/></Product></Policy></x>";
    EXPECT_EQ(Add(text), 0);
    EXPECT_EQ(m_log.Take(),
              (LogLines{{8, "CXMLDataObject::Initialize() -- Section S exists already in the section map"}}));
    EXPECT_EQ(Products(), "<Product SoftwareID='A'>\n<Section name='S'/>\n<Section name='S'/>\n</Product>\n");
}

}  // namespace zupm::test
