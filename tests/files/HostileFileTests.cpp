// Hostile files: oversized names, values and attribute lists, files cut short, entity tricks.
#include <gtest/gtest.h>

#include <set>

#include "Encode.h"
#include "OddFileParts.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

constexpr std::size_t kLong = std::size_t{16} << 20;
constexpr int kManyAttributes = 400'000;

class HostileFiles : public ::testing::Test {
protected:
    [[nodiscard]] HRESULT LoadBytes(std::string_view bytes) { return m_file.Load(m_folder.Write(u"in.xml", bytes)); }

    /// Whether writing gives the same bytes back.
    [[nodiscard]] bool WritesBack(std::string_view bytes)
    {
        return m_file.Write(m_folder.Path(u"out.xml")) == 0 && m_folder.Read(u"out.xml") == bytes;
    }

    TempFolder m_folder;
    PolicyFileClient m_file;
};

std::string UpToDate(const std::string& text)
{
    return ReplaceAll(text, "@", "7");
}

}  // namespace

TEST_F(HostileFiles, ElementNameOf16MB_IsKept)
{
    const std::string name(kLong, 'n');
    const std::string bytes = UpToDate(Document("", "<" + name + "></" + name + ">"));
    ASSERT_EQ(LoadBytes(bytes), 0);
    EXPECT_TRUE(WritesBack(bytes));
}

TEST_F(HostileFiles, AttributeNameAndValueOf16MB_AreKept)
{
    const std::string text(kLong, 'a');
    const std::string bytes = UpToDate(Document("", "<N " + text + "=\"" + text + "\"/>"));
    ASSERT_EQ(LoadBytes(bytes), 0);
    EXPECT_TRUE(WritesBack(bytes));
}

TEST_F(HostileFiles, SettingOf16MB_IsReadAndKept)
{
    const std::string bytes = UpToDate(WithValue(std::string(kLong, 'v')));
    ASSERT_EQ(LoadBytes(bytes), 0);
    EXPECT_TRUE(m_file.Policy(u"P1").Get(u"S", u"N") == (TextResult{0, std::u16string(kLong, u'v')}));
    EXPECT_TRUE(WritesBack(bytes));
}

TEST_F(HostileFiles, SettingOf16MBOfReferences_IsReadAndKept)
{
    std::string value;
    for (std::size_t i = 0; i < kLong / 8; ++i) {
        value += "&lt;&#9;";
    }
    const std::string bytes = UpToDate(WithValue(value));
    ASSERT_EQ(LoadBytes(bytes), 0);
    EXPECT_EQ(m_file.Policy(u"P1").Get(u"S", u"N").text.value().size(), kLong / 4);
    EXPECT_TRUE(WritesBack(bytes));
}

TEST_F(HostileFiles, SoftwareIDOf16MB_IsAKeyLikeAnyOther)
{
    const std::string bytes = UpToDate(ReplaceOnce(Document("", ""), "Product SoftwareID=\"P1\"",
                                                   "Product SoftwareID=\"" + std::string(kLong, 'k') + "\""));
    ASSERT_EQ(LoadBytes(bytes), 0);
    EXPECT_EQ(m_file.FindPolicy(std::u16string(kLong, u'k')), 0);
    EXPECT_EQ(m_file.FindPolicy(std::u16string(kLong - 1, u'k')), result::PolicyNotFound);
}

TEST_F(HostileFiles, CommentInstructionAndCdataOf16MB_AreKept)
{
    const std::string text(kLong / 3, '-');
    const std::string spaced(kLong / 3, ' ');
    const std::string bytes =
        UpToDate(Document("", "<!--" + spaced + "--><?p " + text + "?><N><![CDATA[" + text + "]]></N>"));
    ASSERT_EQ(LoadBytes(bytes), 0);
    EXPECT_TRUE(WritesBack(bytes));
}

TEST_F(HostileFiles, FourHundredThousandAttributes_AreKept)
{
    const std::string bytes = UpToDate(Document("", ManyAttributes(kManyAttributes)));
    ASSERT_EQ(LoadBytes(bytes), 0);
    EXPECT_TRUE(WritesBack(bytes));
}

TEST_F(HostileFiles, FourHundredThousandAttributesOnTheStampedElement_AreKept)
{
    const std::string attributes = ManyAttributes(kManyAttributes).substr(sizeof("<Note") - 1);
    const std::string list = attributes.substr(0, attributes.size() - 2);
    const auto text = [&](const std::string& version) {
        return "<R><PolicyRoot" + list + " version='" + version + "'/></R>";
    };
    ASSERT_EQ(LoadBytes(text("007")), 0);
    EXPECT_TRUE(WritesBack(text("7")));
}

TEST_F(HostileFiles, OneAttributeTwiceAmongFourHundredThousand_IsASyntaxError)
{
    const std::string element = ManyAttributes(kManyAttributes);
    EXPECT_EQ(LoadBytes(Document("", element.substr(0, element.size() - 2) + " a77=''/>")), result::SyntaxError);
}

TEST_F(HostileFiles, HalfAMillionSiblings_AreKept)
{
    std::string siblings;
    for (int i = 0; i < 500'000; ++i) {
        siblings += "<s/>";
    }
    const std::string bytes = UpToDate(Document("", siblings));
    ASSERT_EQ(LoadBytes(bytes), 0);
    EXPECT_TRUE(WritesBack(bytes));
}

TEST_F(HostileFiles, FileCutShortAtAnyByte_EndsInADocumentedCodeWithNothingLoaded)
{
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-16\"?><!DOCTYPE R><!-- \u00E4\U0001F600 --><R a='1'>"
        "<PolicyRoot version=\"12\"><![CDATA[ ]]&#x41;]]></PolicyRoot><?p i?>&lt;&#65;</R>";
    for (const Form form : {Form::Utf8, Form::Utf8Signed, Form::Utf16LeSigned, Form::Utf16Be}) {
        const bool wide = form == Form::Utf16LeSigned || form == Form::Utf16Be;
        const std::string whole = Encode(wide ? text : ReplaceOnce(text, "UTF-16", "UTF-8"), form);
        ASSERT_EQ(LoadBytes(whole), 0);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const HRESULT code = LoadBytes(whole.substr(0, size));
            EXPECT_TRUE(code == result::SyntaxError || code == result::NotValidInItsEncoding) << size << ": " << code;
            EXPECT_EQ(m_file.FindPolicy(u"A"), result::NotInitialised) << size;
            EXPECT_EQ(m_file.Buffer(), std::nullopt) << size;
        }
    }
}

TEST_F(HostileFiles, AnyByteOfTheFileReplaced_LoadsOrEndsInADocumentedCode)
{
    const std::string whole =
        UpToDate(Document("<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "<N a='\u00E4'>\u20AC</N>"));
    std::set<HRESULT> codes;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const char byte : {'\0', '<', '>', '&', '"', '\x80', '\xFF'}) {
            std::string bytes = whole;
            bytes[at] = byte;
            const HRESULT code = LoadBytes(bytes);
            codes.insert(code);
            EXPECT_EQ(code == 0, m_file.Buffer().has_value()) << at;
        }
    }
    EXPECT_EQ(codes, (std::set<HRESULT>{result::Success, result::SyntaxError, result::NotValidInItsEncoding}));
}

TEST_F(HostileFiles, ExternalSubset_IsNeverOpened)
{
    // If it were read, the undeclared reference would be declared and the document well-formed.
    m_folder.Write(u"outside.dtd", "<!ENTITY e 'x'>");
    EXPECT_EQ(LoadBytes("<!DOCTYPE R SYSTEM 'outside.dtd'><R>&e;</R>"), result::SyntaxError);
    EXPECT_EQ(LoadBytes("<!DOCTYPE R SYSTEM 'outside.dtd'><R/>"), 0);
}

}  // namespace zupm::test
