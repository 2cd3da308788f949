// How an edit finds out that its file is still the one that was loaded: byte for byte, in every encoding, against the
// text that the document keeps.
#include <algorithm>
#include <optional>

#include "PolicyFileTest.h"
#include "tests/support/ActingObjects.h"
#include "xml/Encoding.h"

namespace zupm::test {

namespace {

using namespace std::literals;
using AdvXMLParser::UTF_ENCODINGS;

constexpr UTF_ENCODINGS kEncodings[] = {
    UTF_ENCODINGS::Utf16LittleEndianSigned,
    UTF_ENCODINGS::Utf16BigEndianSigned,
    UTF_ENCODINGS::Utf8Signed,
    UTF_ENCODINGS::Utf8,
    UTF_ENCODINGS::Iso8859_1,
    UTF_ENCODINGS::Utf16LittleEndian,
    UTF_ENCODINGS::Utf16BigEndian,
};

std::string_view DeclarationFor(UTF_ENCODINGS encoding)
{
    return encoding == UTF_ENCODINGS::Iso8859_1 ? "<?xml version='1.0' encoding='ISO-8859-1'?>"
                                                : "<?xml version='1.0'?>";
}

/// A policy file longer than the pieces that it is compared in, with characters of two bytes on their borders.
std::string TextFor(UTF_ENCODINGS encoding)
{
    std::string text(DeclarationFor(encoding));
    text += "<R><!-- ";
    for (int i = 0; i < 70'000; ++i) {
        text += i % 3 == 0 ? "\xC3\xA4" : i % 3 == 1 ? "\xC3\xBF" : "xyz";
    }
    return text +
           " --><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='A'/></Policy></PolicyGroup></PolicyRoot>"
           "<TaskRoot/></R>";
}

std::string BytesIn(UTF_ENCODINGS encoding)
{
    return AdvXMLParser::Encode(TextFor(encoding), encoding, true).value_or("");
}

class EditComparison : public PolicyFileTest {
protected:
    /// Writes into the file as it is, without a new one in its place.
    void Put(const std::string& bytes) const { (void)m_folder.Write(u"policy.xml", bytes); }

    void Open(const std::string& bytes)
    {
        Put(bytes);
        ASSERT_EQ(m_edit->OpenForEdit(Bstr(m_folder.Path(u"policy.xml")).Get(), 0), 0);
    }
    [[nodiscard]] bool HasChanged() const
    {
        LONG changed = -1;
        EXPECT_EQ(m_edit->HasFileChanged(&changed), 0);
        return changed == 1;
    }

    ComPtr<IPolicyFileEdit> m_edit = ComPtr<IPolicyFile>(m_file.Object()).Query<IPolicyFileEdit>();
};

}  // namespace

TEST_F(EditComparison, FileInEveryEncoding_IsComparedByteForByte)
{
    for (const UTF_ENCODINGS encoding : kEncodings) {
        SCOPED_TRACE(static_cast<int>(encoding));
        const std::string loaded = BytesIn(encoding);
        Open(loaded);
        ASSERT_FALSE(HasChanged());
        ASSERT_EQ(m_file.Add(m_file.NewPolicy(u"B")), 0);
        ASSERT_EQ(m_file.RemovePolicy(u"A"), 0);
        EXPECT_FALSE(HasChanged()) << "edits of the document are no changes of the file";
        for (const std::size_t at : {std::size_t{0}, std::size_t{65'535}, std::size_t{65'536}, loaded.size() - 1}) {
            std::string other = loaded;
            other[at] = static_cast<char>(other[at] ^ 1);
            Put(other);
            EXPECT_TRUE(HasChanged()) << at;
        }
        Put(loaded + " ");
        EXPECT_TRUE(HasChanged()) << "longer";
        Put(loaded.substr(0, loaded.size() - 1));
        EXPECT_TRUE(HasChanged()) << "shorter";
        Put(loaded);
        EXPECT_FALSE(HasChanged());
        EXPECT_EQ(m_edit->RehearseCommit(0), 0);
        EXPECT_EQ(m_edit->CommitEdit(0), 0);
    }
}

TEST_F(EditComparison, SameTextInAnotherEncoding_IsAChange)
{
    for (const UTF_ENCODINGS loaded : kEncodings) {
        const std::string text = std::string(DeclarationFor(loaded)) + "<R>\xC3\xA4</R>";
        Open(*AdvXMLParser::Encode(text, loaded, true));
        for (const UTF_ENCODINGS other : kEncodings) {
            Put(*AdvXMLParser::Encode(text, other, true));
            EXPECT_EQ(HasChanged(), other != loaded) << static_cast<int>(loaded) << " " << static_cast<int>(other);
        }
    }
}

TEST_F(EditComparison, SecondSignature_IsPartOfTheText)
{
    Open("\xEF\xBB\xBF<R/>");
    Put("\xEF\xBB\xBF\xEF\xBB\xBF<R/>");
    EXPECT_TRUE(HasChanged());
    Put("<R/>");
    EXPECT_TRUE(HasChanged());
}

TEST_F(EditComparison, CharacterThatLatin1Lacks_IsNoChangeUntilItIsWritten)
{
    const std::string loaded = BytesIn(UTF_ENCODINGS::Iso8859_1);
    Open(loaded);
    ProductClient policy = m_file.NewPolicy(u"B");
    ASSERT_EQ(policy.Put(u"s", u"n", u"\u20AC"), 0);
    ASSERT_EQ(m_file.Add(policy), 0);
    EXPECT_FALSE(HasChanged());
    ASSERT_EQ(m_edit->CommitEdit(0), 0);
    EXPECT_NE(m_folder.Read(u"policy.xml").find("&#8364;"), std::string::npos);
}

TEST_F(EditComparison, LoadWhileAnObjectIsAsked_EndsTheEdit)
{
    const std::string loaded = BytesIn(UTF_ENCODINGS::Utf8);
    const std::u16string other = m_folder.Write(u"other.xml", "<Other/>");
    Open(loaded);
    ActingProduct product({0, u"B"}, {0, u"<X/>"});
    product.actions.onData = [&] { EXPECT_EQ(m_file.Load(other), 0); };
    EXPECT_EQ(m_file.Object()->AddPolicy(&product, 0), result::NotInitialised);
    LONG changed = 7;
    EXPECT_EQ(m_edit->HasFileChanged(&changed), result::NotInitialised);
    EXPECT_EQ(changed, 7);
    EXPECT_EQ(m_edit->CommitEdit(1), result::NotInitialised);
    EXPECT_EQ(m_folder.Read(u"policy.xml"), loaded);
}

TEST_F(EditComparison, AnotherEditOpenedWhileAnObjectIsAsked_IsComparedWithItsOwnFile)
{
    Open(BytesIn(UTF_ENCODINGS::Utf8));
    const std::u16string other = m_folder.Write(u"other.xml", "\xFF\xFE<\0R\0/\0>\0"s);
    ActingProduct product({0, u"B"}, {0, u"<X/>"});
    product.actions.onData = [&] { EXPECT_EQ(m_edit->OpenForEdit(Bstr(other).Get(), 0), 0); };
    EXPECT_EQ(m_file.Object()->AddPolicy(&product, 0), result::NotInitialised);
    EXPECT_FALSE(HasChanged());
    (void)m_folder.Write(u"other.xml", "<R/>");
    EXPECT_TRUE(HasChanged());
}

}  // namespace zupm::test
