#include <gtest/gtest.h>

#include "platform/Files.h"
#include "tests/support/TempFolder.h"
#include "tests/xml/XmlTestSupport.h"
#include "xml/FileBuffer.h"

namespace AdvXMLParser {
namespace {

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
    EXPECT_EQ(Refusal(std::move(text)), "1:1: the declared encoding is not supported or contradicts the bytes");
}

TEST(FileBuffer, WithoutDetectionTheGivenEncodingDecodesAndStays)
{
    const zupm::test::TempFolder folder;
    const std::u16string path = folder.Path(u"file.xml");
    ASSERT_EQ(zupm::ReplaceFileAtomically(path, "<a>\xE4</a>"), 0);
    XmlText text;
    UTF_ENCODINGS encoding = UTF_ENCODINGS::Iso8859_1;
    ReadBufferFromFile(path, text, encoding, false);
    EXPECT_EQ(text.Utf8(), "<a>\xC3\xA4</a>");
    EXPECT_EQ(encoding, UTF_ENCODINGS::Iso8859_1);
}

/// Limits the size of written files while it lives.
class WrittenFilesLimit {
public:
    explicit WrittenFilesLimit(std::size_t bytes) { LimitWrittenFiles(bytes); }
    ~WrittenFilesLimit() { LimitWrittenFiles(zupm::kLargestFile); }
    WrittenFilesLimit(const WrittenFilesLimit&) = delete;
    WrittenFilesLimit& operator=(const WrittenFilesLimit&) = delete;
};

/// For a text of 10 characters, 11 bytes as UTF-8: the size of its file in an encoding.
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
