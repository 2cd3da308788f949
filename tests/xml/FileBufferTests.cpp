#include <gtest/gtest.h>

#include "platform/Files.h"
#include "tests/support/TempFolder.h"
#include "tests/xml/XmlTestSupport.h"
#include "xml/FileBuffer.h"

namespace AdvXMLParser {
namespace {

using namespace std::string_view_literals;

std::int32_t ReadCode(std::u16string_view path)
{
    XmlText text;
    UTF_ENCODINGS encoding = UTF_ENCODINGS::Utf8;
    try {
        ReadBufferFromFile(path, text, encoding, true);
        return 0;
    } catch (const ReadWriteException& failure) {
        return failure.GetErrorCode();
    }
}

TEST(FileBuffer, FilesOfEveryEncodingComeBackByteForByte)
{
    const zupm::test::TempFolder folder;
    const std::u16string path = folder.Path(u"file.xml");
    for (const std::string_view bytes : {
             "<a>\xC3\xA4</a>\r\n"sv,
             "\xEF\xBB\xBF<a>\xC3\xA4</a>"sv,
             "\xFF\xFE<\0a\0>\0\xE4\0<\0/\0a\0>\0\r\0\n\0"sv,
             "\xFE\xFF\0<\0a\0>\0\xE4\0<\0/\0a\0>"sv,
             "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>"sv,
         }) {
        ASSERT_EQ(zupm::ReplaceFileAtomically(path, bytes), 0);
        XmlText text;
        UTF_ENCODINGS encoding = UTF_ENCODINGS::Utf8;
        ReadBufferFromFile(path, text, encoding, true);
        const std::unique_ptr<Document> document = Parser().Parse(std::move(text));
        EXPECT_EQ(document->GetRoot().GetText(), u"\u00E4");
        const std::u16string copy = folder.Path(u"copy.xml");
        WriteBufferToFile(copy, document->GenerateXML(false), encoding, true);
        std::string written;
        ASSERT_EQ(zupm::ReadWholeFile(copy, written), 0);
        EXPECT_EQ(written, bytes);
    }
}

TEST(FileBuffer, AFailedReadChangesNeitherTextNorEncoding)
{
    const zupm::test::TempFolder folder;
    const std::u16string path = folder.Path(u"file.xml");
    ASSERT_EQ(zupm::ReplaceFileAtomically(path, "\xFF\xFE<"), 0);
    XmlText text(std::string("before"));
    UTF_ENCODINGS encoding = UTF_ENCODINGS::Iso8859_1;
    EXPECT_THROW(ReadBufferFromFile(path, text, encoding, true), ReadWriteException);
    EXPECT_EQ(text.Utf8(), "before");
    EXPECT_EQ(encoding, UTF_ENCODINGS::Iso8859_1);
    EXPECT_EQ(ReadCode(path), zupm::result::NotValidInItsEncoding);
    EXPECT_EQ(ReadCode(folder.Path(u"missing.xml")), zupm::result::FileNotFound);
}

TEST(FileBuffer, BytesUnderAnUnsupportedDeclarationAreRefusedByTheParserAtItsPlace)
{
    const zupm::test::TempFolder folder;
    const std::u16string path = folder.Path(u"file.xml");
    ASSERT_EQ(zupm::ReplaceFileAtomically(path, "<?xml version='1.0' encoding='Shift_JIS'?><a>\x93\xFA</a>"), 0);
    XmlText text;
    UTF_ENCODINGS encoding = UTF_ENCODINGS::Utf8;
    ReadBufferFromFile(path, text, encoding, true);
    EXPECT_EQ(Refusal(text.Utf8(), text.Encoding()),
              "1:1: the declared encoding is not supported or contradicts the bytes");
}

TEST(FileBuffer, TextThatItsEncodingCannotHoldIsNotWritten)
{
    const zupm::test::TempFolder folder;
    const std::u16string path = folder.Path(u"file.xml");
    ASSERT_EQ(zupm::ReplaceFileAtomically(path, "old"), 0);
    EXPECT_THROW(
        WriteBufferToFile(path, XmlText(std::string("<a><!--\xE2\x82\xAC--></a>")), UTF_ENCODINGS::Iso8859_1, true),
        ReadWriteException);
    std::string bytes;
    ASSERT_EQ(zupm::ReadWholeFile(path, bytes), 0);
    EXPECT_EQ(bytes, "old");
}

/// A limit for the length of a test.
class WrittenFilesLimit {
public:
    explicit WrittenFilesLimit(std::size_t bytes) { LimitWrittenFiles(bytes); }
    ~WrittenFilesLimit() { LimitWrittenFiles(zupm::kLargestFile); }
    WrittenFilesLimit(const WrittenFilesLimit&) = delete;
    WrittenFilesLimit& operator=(const WrittenFilesLimit&) = delete;
};

/// A text of 11 bytes as UTF-8 and 10 characters, and how many bytes a file with it has.
struct SizeRow {
    const char* label;
    UTF_ENCODINGS encoding;
    std::size_t bytes;
};

constexpr SizeRow kSizeRows[] = {
    {"UTF-8", UTF_ENCODINGS::Utf8, 11},
    {"UTF-8 with a signature", UTF_ENCODINGS::Utf8Signed, 14},
    {"UTF-16", UTF_ENCODINGS::Utf16LittleEndian, 20},
    {"UTF-16 with a signature", UTF_ENCODINGS::Utf16BigEndianSigned, 22},
    {"ISO-8859-1, whose text is larger", UTF_ENCODINGS::Iso8859_1, 11},
};

TEST(FileBuffer, TextOfAFileThatCouldNotBeReadAgainIsRefusedAndTheOldFileStays)
{
    const zupm::test::TempFolder folder;
    const std::u16string path = folder.Path(u"file.xml");
    const XmlText text(std::string("<a>\xC3\xA4xy</a>"));
    for (const SizeRow& row : kSizeRows) {
        ASSERT_EQ(zupm::ReplaceFileAtomically(path, "old"), 0);
        {
            const WrittenFilesLimit limit(row.bytes - 1);
            try {
                WriteBufferToFile(path, text, row.encoding, true);
                FAIL() << row.label;
            } catch (const ReadWriteException& failure) {
                EXPECT_EQ(failure.GetErrorCode(), zupm::result::FileTooLarge) << row.label;
            }
            EXPECT_EQ(folder.Read(u"file.xml"), "old") << row.label;
        }
        const WrittenFilesLimit limit(row.bytes);
        WriteBufferToFile(path, text, row.encoding, true);
        EXPECT_NE(folder.Read(u"file.xml"), "old") << row.label;
    }
}

}  // namespace
}  // namespace AdvXMLParser
