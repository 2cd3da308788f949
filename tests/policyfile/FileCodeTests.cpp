// Files that cannot be loaded: each has its code, its log lines and its error information, and leaves nothing loaded.

#include "PolicyFileTest.h"

namespace zupm::test {

namespace {

using namespace std::literals;

class PolicyFileCodes : public PolicyFileTest {
protected:
    void ExpectRefused(const std::string& label, std::u16string_view path, HRESULT code)
    {
        LogCapture log;
        EXPECT_EQ(m_file.Load(path), code) << label;
        const std::vector<LogLine> lines = log.Take();
        ASSERT_FALSE(lines.empty()) << label;
        EXPECT_EQ(lines.back().text, code == result::SyntaxError
                                         ? "CPolicyFile::Initialize() - Initalize policy file failed"
                                         : "CPolicyFile::Initialize() - Read policy file failed")
            << label;
        EXPECT_EQ(lines.size(), code == result::SyntaxError ? 2U : 1U) << label;
        EXPECT_EQ(m_file.FindPolicy(u"A"), result::NotInitialised) << label;
        EXPECT_EQ(m_file.Buffer(), std::nullopt) << label;
    }
};

struct BytesRow {
    const char* label;
    std::string_view bytes;
};

constexpr BytesRow kNotValidInTheirEncoding[] = {
    {"continuation byte alone", "<R>\x80</R>"sv},
    {"sequence cut short", "<R>\xC3</R>"sv},
    {"overlong form", "<R>\xC0\xAF</R>"sv},
    {"surrogate in UTF-8", "<R>\xED\xA0\x80</R>"sv},
    {"beyond the last character", "<R>\xF4\x90\x80\x80</R>"sv},
    {"byte that UTF-8 never has", "<R>\xFF</R>"sv},
    {"Latin-1 without a declaration", "<R>\xE4</R>"sv},
    {"Latin-1 behind the UTF-8 signature", "\xEF\xBB\xBF<R>\xE4</R>"sv},
    {"Latin-1 declared as UTF-8", "<?xml version='1.0' encoding='UTF-8'?><R>\xE4</R>"sv},
    {"half a UTF-16 unit", "\xFF\xFE<\0R\0/\0>\0x"sv},
    {"high surrogate alone", "\xFF\xFE<\0R\0>\0\x00\xD8<\0/\0R\0>\0"sv},
    {"low surrogate alone", "\xFE\xFF\0<\0R\0>\xDC\x00\0<\0/\0R\0>"sv},
};

constexpr BytesRow kNotWellFormed[] = {
    {"empty file", ""sv},
    {"signature alone", "\xEF\xBB\xBF"sv},
    {"UTF-16 signature alone", "\xFF\xFE"sv},
    {"white space alone", " \r\n\t"sv},
    {"declaration alone", "<?xml version='1.0'?>"sv},
    {"text alone", "policy"sv},
    {"comment alone", "<!-- R -->"sv},
    {"root not closed", "<R>"sv},
    {"two roots", "<R/><R/>"sv},
    {"text behind the root", "<R/>x"sv},
    {"attribute twice", "<R a='1' a='2'/>"sv},
    {"attribute without quotes", "<R a=1/>"sv},
    {"less-than in an attribute", "<R a='<'/>"sv},
    {"ampersand alone", "<R>&</R>"sv},
    {"entity never declared", "<R>&nbsp;</R>"sv},
    {"reference to NUL", "<R>&#0;</R>"sv},
    {"reference to a surrogate", "<R>&#xD800;</R>"sv},
    {"control character", "<R>\x01</R>"sv},
    {"NUL", "<R>\0</R>"sv},
    {"U+FFFE", "<R>\xEF\xBF\xBE</R>"sv},
    {"end of CDATA in text", "<R>]]></R>"sv},
    {"two hyphens in a comment", "<R><!-- -- --></R>"sv},
    {"declaration not at the start", " <?xml version='1.0'?><R/>"sv},
    {"XML 1.1", "<?xml version='1.1'?><R/>"sv},
    {"encoding not supported", "<?xml version='1.0' encoding='windows-1252'?><R/>"sv},
    {"encoding not known", "<?xml version='1.0' encoding='x-nothing'?><R/>"sv},
    {"UTF-8 that says it is UTF-16", "<?xml version='1.0' encoding='UTF-16'?><R/>"sv},
    {"UTF-16 that says it is UTF-8",
     "\xFF\xFE<\0?\0x\0m\0l\0 \0v\0e\0r\0s\0i\0o\0n\0=\0'\0001\0.\0000\0'\0 \0e\0n\0c\0o\0"
     "d\0i\0n\0g\0=\0'\0U\0T\0F\0-\0008\0'\0?\0>\0<\0R\0/\0>\0"sv},
    {"entity declaration", "<!DOCTYPE R [<!ENTITY e 'x'>]><R>&e;</R>"sv},
    {"entity declared and not used", "<!DOCTYPE R [<!ENTITY e 'x'>]><R/>"sv},
    {"parameter entity", "<!DOCTYPE R [<!ENTITY % e 'x'>]><R/>"sv},
    {"external entity", "<!DOCTYPE R [<!ENTITY e SYSTEM 'file:///etc/hostname'>]><R>&e;</R>"sv},
    {"unparsed entity", "<!DOCTYPE R [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'e' NDATA n>]><R/>"sv},
    {"predefined entity declared again", "<!DOCTYPE R [<!ENTITY lt '&#38;#60;'>]><R/>"sv},
    {"entity bomb",
     "<!DOCTYPE R [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;'><!ENTITY c '&b;&b;&b;&b;&b;&b;&b;'>"
     "<!ENTITY d '&c;&c;&c;&c;&c;&c;&c;'>]><R>&d;</R>"sv},
};

struct ErrorRow {
    const char* label;
    std::string_view bytes;
    std::u16string_view place;  ///< ":line:column: "
};

constexpr ErrorRow kErrorPlaces[] = {
    {"mismatched tag", "<R>\n<a>\n    </b>\n</R>"sv, u":3:7: "},
    {"CRLF counts as one line", "<R>\r\n<a>\r\n</b>"sv, u":3:3: "},
    {"a column counts characters", "<R>\n<a>\xC3\xA4\xF0\x9F\x98\x80</b></R>"sv, u":2:8: "},
    {"a signature is no column", "\xEF\xBB\xBF<R></S>"sv, u":1:6: "},
    {"UTF-16", "\xFF\xFE<\0R\0>\0\n\0<\0/\0S\0>\0"sv, u":2:3: "},
};

}  // namespace

TEST_F(PolicyFileCodes, PathsThatNoFileIsAt_GiveTheFileCode)
{
    ASSERT_EQ(LoadText("<R/>"), 0);
    ExpectRefused("missing file", m_folder.Path(u"missing.xml"), result::FileNotFound);
    ExpectRefused("missing folder", m_folder.Path(u"no/such/folder.xml"), result::PathNotFound);
    ExpectRefused("a folder", m_folder.Path(u""), result::AccessDenied);
    ExpectRefused("empty path", u"", result::InvalidName);
    ExpectRefused("null in the path", m_folder.Path(u"policy.xml") + u"\0.xml"s, result::InvalidName);
}

TEST_F(PolicyFileCodes, NullPath_CountsAsTheEmptyPath)
{
    EXPECT_EQ(m_file.Object()->InitializeFile(nullptr, 0), result::InvalidName);
}

TEST_F(PolicyFileCodes, BytesNotValidInTheirEncoding_AreRefused)
{
    for (const BytesRow& row : kNotValidInTheirEncoding) {
        ASSERT_EQ(LoadText("<R/>"), 0);
        ExpectRefused(row.label, m_folder.Write(u"bad.xml", row.bytes), result::NotValidInItsEncoding);
    }
}

TEST_F(PolicyFileCodes, TextThatIsNotWellFormedOrDeclaresEntities_IsASyntaxError)
{
    for (const BytesRow& row : kNotWellFormed) {
        ASSERT_EQ(LoadText("<R/>"), 0);
        ExpectRefused(row.label, m_folder.Write(u"bad.xml", row.bytes), result::SyntaxError);
    }
}

TEST_F(PolicyFileCodes, SyntaxError_LeavesFileLineColumnAndReasonAsErrorInformation)
{
    for (const ErrorRow& row : kErrorPlaces) {
        const std::u16string path = m_folder.Write(u"bad.xml", row.bytes);
        ASSERT_EQ(m_file.Load(path), result::SyntaxError) << row.label;
        const std::u16string description = LastErrorDescription();
        const std::u16string begin = path + std::u16string(row.place);
        EXPECT_EQ(Utf8(description.substr(0, begin.size())), Utf8(begin)) << row.label;
        EXPECT_GT(description.size(), begin.size()) << row.label << ": a reason follows";
    }
}

TEST_F(PolicyFileCodes, FileCode_LeavesItsSentenceAsErrorInformation)
{
    ASSERT_EQ(m_file.Load(m_folder.Path(u"missing.xml")), result::FileNotFound);
    EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::FileNotFound));
}

TEST_F(PolicyFileCodes, EveryFailingOperation_LeavesTheSentenceOfItsCode)
{
    ASSERT_EQ(m_file.RemovePolicy(u"A"), result::ReadOnly);
    EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::ReadOnly));
    ASSERT_EQ(m_file.FindPolicy(u"A"), result::NotInitialised);
    EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::NotInitialised));
    ASSERT_EQ(LoadText("<R/>"), 0);
    ASSERT_EQ(m_file.FindPolicy(u"A"), result::PolicyNotFound);
    EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::PolicyNotFound));
    ASSERT_EQ(m_file.FindTask(u"A", u"1"), result::TaskNotFound);
    EXPECT_EQ(LastErrorDescription(), result::SentenceFor(result::TaskNotFound));
}

}  // namespace zupm::test
