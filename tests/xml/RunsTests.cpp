// The text of a document in pieces: which pieces there are, that they are the text, and the bytes made from them.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/xml/XmlTestSupport.h"
#include "xml/Encoding.h"
#include "xml/FileBytes.h"

namespace AdvXMLParser {
namespace {

constexpr UTF_ENCODINGS kAllEncodings[] = {
    UTF_ENCODINGS::Utf16LittleEndianSigned,
    UTF_ENCODINGS::Utf16BigEndianSigned,
    UTF_ENCODINGS::Utf8Signed,
    UTF_ENCODINGS::Utf8,
    UTF_ENCODINGS::Iso8859_1,
    UTF_ENCODINGS::Utf16LittleEndian,
    UTF_ENCODINGS::Utf16BigEndian,
};

TEST(Runs, UntouchedDocument_IsOneRun)
{
    const std::string text = "<?xml version='1.0'?>\n<a><b><c/>x</b> <b/></a>\n<!-- end -->\n";
    EXPECT_EQ(Parsed(text)->Runs(), TextRuns{text});
    EXPECT_EQ(Document(u"a").Runs(), TextRuns{"<a/>"});
}

TEST(Runs, EditedElement_IsARunBetweenTheTwoOthers)
{
    const std::unique_ptr<Document> document = Parsed("<a><b><c>1</c><c>2</c></b><b><c>3</c><c>4</c></b></a>");
    Child(Child(document->GetRoot(), 0), 1).SetText(u"new");
    const TextRuns expected = {"<a><b><c>1</c><c>", "new</c>", "</b><b><c>3</c><c>4</c></b></a>"};
    EXPECT_EQ(document->Runs(), expected);
}

TEST(Runs, RemovedElement_LeavesTwoRuns)
{
    const std::unique_ptr<Document> document = Parsed("<a><b>1</b><b>2</b><b>3</b></a>");
    Child(document->GetRoot(), 1).Delete();
    const TextRuns expected = {"<a><b>1</b>", "<b>3</b></a>"};
    EXPECT_EQ(document->Runs(), expected);
}

/// A document of two levels without line breaks, and the texts that it should hold.
class Grid {
public:
    explicit Grid(std::size_t rows) : m_rows(rows, std::vector<std::string>(3, "old")) {}

    [[nodiscard]] std::string Text() const
    {
        std::string text = "<a>";
        for (const std::vector<std::string>& row : m_rows) {
            text += row.empty() ? "<b></b>" : "<b>";
            for (const std::string& cell : row) {
                text += "<c>" + cell + "</c>";
            }
            text += row.empty() ? "" : "</b>";
        }
        return text + "</a>";
    }

    /// One random edit of the document and of the texts.
    void Edit(const Element& root, std::mt19937& random)
    {
        const std::size_t at = random() % m_rows.size();
        std::vector<std::string>& row = m_rows[at];
        const Element element = Child(root, static_cast<int>(at));
        const std::string text = std::string(1 + random() % 5, static_cast<char>('a' + random() % 26));
        const std::u16string wide(text.begin(), text.end());
        const std::size_t kind = random() % 8;
        if (kind == 0 || row.empty()) {
            Element(element).AddElementInto(u"c").SetText(wide);
            row.push_back(text);
        } else if (kind == 1) {
            const std::size_t cell = random() % row.size();
            Child(element, static_cast<int>(cell)).Delete();
            row.erase(row.begin() + static_cast<std::ptrdiff_t>(cell));
        } else if (kind == 2 && m_rows.size() < 60) {
            Element(root).Add(element.Clone());
            m_rows.push_back(std::vector<std::string>(m_rows[at]));
        } else if (kind == 3 && m_rows.size() > 2) {
            Element(element).Delete();
            m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(at));
        } else {
            const std::size_t cell = random() % row.size();
            Child(element, static_cast<int>(cell)).SetText(wide);
            row[cell] = text;
        }
    }

private:
    std::vector<std::vector<std::string>> m_rows;
};

TEST(Runs, RandomEdits_GiveTheWholeTextAfterEachOfThem)
{
    for (std::uint32_t seed = 0; seed < 40; ++seed) {
        std::mt19937 random(seed);
        Grid grid(20);
        const std::unique_ptr<Document> document = Parsed(grid.Text());
        for (int i = 0; i < 100; ++i) {
            grid.Edit(document->GetRoot(), random);
            ASSERT_EQ(TextOf(*document), grid.Text()) << "seed " << seed << ", edit " << i;
        }
    }
}

TEST(Runs, MoreEditsThanAreRemembered_GiveTheWholeText)
{
    const std::unique_ptr<Document> document = Parsed("<a><b><c>1</c></b><b><c>2</c></b></a>");
    const Element first = Child(Child(document->GetRoot(), 0), 0);
    const Element second = Child(Child(document->GetRoot(), 1), 0);
    for (int i = 0; i < 40'000; ++i) {
        Element(first).SetText(i % 2 == 0 ? u"x" : u"y");
        Element(second).SetText(i % 2 == 0 ? u"x" : u"y");
    }
    Element(document->GetRoot()).AddElementInto(u"d");
    EXPECT_EQ(TextOf(*document), "<a><b><c>y</c></b><b><c>y</c></b><d/></a>");
}

std::string BytesOf(const TextRuns& runs, UTF_ENCODINGS encoding, bool writeSignature)
{
    FileBytes source(runs, encoding, writeSignature);
    std::string bytes;
    for (std::string_view piece = source.Next(); !piece.empty(); piece = source.Next()) {
        bytes += piece;
    }
    EXPECT_TRUE(source.Next().empty());
    return bytes;
}

/// Texts of one run, of many small ones and of large ones, with characters of every length at the ends of the pieces.
std::vector<std::vector<std::string>> RunsToWrite()
{
    const std::string mixed = "\xC3\xA4<a>\xC3\xBC</a>";
    std::vector<std::vector<std::string>> rows = {{"<a/>"}, std::vector<std::string>(30'000, mixed)};
    for (std::size_t size = (128U << 10U) - 3; size <= (128U << 10U) + 3; ++size) {
        rows.push_back({"<a>", std::string(size, 'x') + "\xC3\xA4" + std::string(300'000, 'y'), "</a>"});
        rows.push_back({std::string(size, 'x'), mixed, mixed, std::string(size, 'z')});
    }
    return rows;
}

TEST(FileBytes, AnyRunsInAnyEncoding_GiveTheBytesOfTheWholeText)
{
    for (const std::vector<std::string>& row : RunsToWrite()) {
        const TextRuns runs(row.begin(), row.end());
        for (const UTF_ENCODINGS encoding : kAllEncodings) {
            for (const bool writeSignature : {true, false}) {
                ASSERT_EQ(BytesOf(runs, encoding, writeSignature), Encode(Joined(runs), encoding, writeSignature))
                    << static_cast<int>(encoding) << " " << row.size();
            }
        }
    }
}

TEST(FileBytes, PairsAtTheEndOfAPiece_StayWhole)
{
    for (std::size_t size = (128U << 10U) - 5; size <= (128U << 10U) + 5; ++size) {
        const std::string text = std::string(size, 'x') + "\xF0\x9F\x98\x80\xE6\x97\xA5";
        for (const UTF_ENCODINGS encoding : {UTF_ENCODINGS::Utf16LittleEndian, UTF_ENCODINGS::Utf8}) {
            EXPECT_EQ(BytesOf({text}, encoding, true), Encode(text, encoding, true)) << size;
        }
    }
}

TEST(FileBytes, Rewound_GiveEverythingAgain)
{
    const std::string first = std::string(200'000, 'x') + "\xC3\xA4";
    const TextRuns runs = {first, "<a/>"};
    for (const UTF_ENCODINGS encoding : kAllEncodings) {
        FileBytes source(runs, encoding, true);
        for (const int pieces : {0, 1, 2, 1'000}) {
            for (int i = 0; i < pieces; ++i) {
                (void)source.Next();
            }
            source.Rewind();
            std::string bytes;
            for (std::string_view piece = source.Next(); !piece.empty(); piece = source.Next()) {
                bytes += piece;
            }
            EXPECT_EQ(bytes, Encode(Joined(runs), encoding, true)) << static_cast<int>(encoding) << " " << pieces;
            source.Rewind();
        }
    }
}

TEST(FileBytes, LargeRunOfUtf8_IsNotCopied)
{
    const std::string text(1 << 20, 'x');
    FileBytes source({text}, UTF_ENCODINGS::Utf8Signed, true);
    EXPECT_EQ(source.Next(), "\xEF\xBB\xBF");
    EXPECT_EQ(source.Next().data(), text.data());
}

TEST(TextSnapshot, KeepsTheTextOfItsMoment)
{
    const std::unique_ptr<Document> document = Parsed("<a><b>1</b><b>2</b><b>3</b></a>");
    const TextSnapshot parsed = document->Snapshot();
    Child(document->GetRoot(), 1).SetText(u"new");
    TextSnapshot edited = document->Snapshot();
    for (int i = 0; i < 1'000; ++i) {
        Child(document->GetRoot(), 1).SetText(std::u16string(1'000, u'x'));
    }
    const TextSnapshot moved = std::move(edited);
    EXPECT_EQ(Joined(parsed.Runs()), "<a><b>1</b><b>2</b><b>3</b></a>");
    EXPECT_EQ(Joined(moved.Runs()), "<a><b>1</b><b>new</b><b>3</b></a>");
    EXPECT_EQ(Joined(TextSnapshot().Runs()), "");
}

TEST(TextSnapshot, CopiesOnlyWhatWasEdited)
{
    const std::unique_ptr<Document> document = Parsed("<a><b>1</b><b>2</b><b>3</b></a>");
    const char* const parsed = document->Runs().front().data();
    EXPECT_EQ(document->Snapshot().Runs().front().data(), parsed);
    Child(document->GetRoot(), 1).SetText(u"new");
    const TextRuns runs = document->Runs();
    const TextSnapshot snapshot = document->Snapshot();
    ASSERT_EQ(snapshot.Runs().size(), 3U);
    EXPECT_EQ(snapshot.Runs()[0].data(), runs[0].data());
    EXPECT_NE(snapshot.Runs()[1].data(), runs[1].data());
    EXPECT_EQ(snapshot.Runs()[2].data(), runs[2].data());
}

}  // namespace
}  // namespace AdvXMLParser
