// What a load and an add that run out of memory half way leave, where that shows later.
#include <algorithm>
#include <memory>
#include <string>

#include "settings/CSectionParser.h"
#include "tests/faults/EachAllocation.h"
#include "tests/support/FixedClock.h"
#include "tests/support/ForeignObjects.h"
#include "tests/support/LogCapture.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"
#include "xml/Document.h"
#include "xml/Parser.h"

namespace zupm::test {

namespace {

/// A file of one product and one task, whose value and version are `mark`.
std::string FileOf(const std::string& mark)
{
    return "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='a product with a long name'><Section name='S'>"
           "<Setting name='N'>" +
           mark +
           "</Setting></Section></Product><Product SoftwareID='another product with one'/></Policy></PolicyGroup>"
           "</PolicyRoot><TaskRoot><TaskGroup SoftwareID='a product with a long name' TaskID='a task with a long name'>"
           "<Task TaskVersion='" +
           mark +
           "'/></TaskGroup><TaskGroup SoftwareID='a product with a long name' TaskID='another task with one'><Task/>"
           "</TaskGroup></TaskRoot></R>";
}

constexpr std::u16string_view kProduct = u"a product with a long name";
constexpr std::u16string_view kTask = u"a task with a long name";
constexpr char kProductLine[] =
    "CPolicyFile::InitializePolicyMap() -- SoftwareID a product with a long name exists already in the policy map";
constexpr char kTaskLine[] =
    "CPolicyFile::InitializeTaskMap() -- TaskID a task with a long name exists already in the task map for Software "
    "a product with a long name";

struct Loading {
    explicit Loading(std::u16string_view first) : path(first) {}

    Bstr path;
    PolicyFileClient file;
    HRESULT code = 0;
};

struct Adding {
    explicit Adding(std::u16string_view path) { EXPECT_EQ(file.Load(path), 0); }

    PolicyFileClient file;
    ForeignTask task{{0, u"A"}, {0, u"1"}, {0, u"<X><TaskGroup SoftwareID='A' TaskID='1'><Task/></TaskGroup></X>"}};
    HRESULT code = 0;
};

/// A container with one setting of long names, and a cursor over it.
struct Opening {
    std::unique_ptr<AdvXMLParser::Document> document = AdvXMLParser::Parser().Parse(
        AdvXMLParser::XmlText(std::string("<P><Section name='a section with a long name'>"
                                          "<Setting name='a setting with a long name'>1</Setting></Section></P>")));
    CSectionParser cursor{document->GetRoot(), nullptr};
    result::Code code = result::Success;
};

bool Contains(const std::vector<LogLine>& lines, const char* text)
{
    return std::ranges::find(lines, LogLine{8, text}) != lines.end();
}

}  // namespace

TEST(HalfWay, EntriesOfALoadThatFailedWhileIndexing_StayAndWinOverThoseOfTheNextFile)
{
    const TempFolder folder;
    const std::u16string first = folder.Write(u"first.xml", FileOf("first"));
    const std::u16string second = folder.Write(u"second.xml", FileOf("second"));
    int products = 0;
    int tasks = 0;
    const auto load = [](Loading& l) { l.code = l.file.Object()->InitializeFile(l.path.Get(), 0); };
    const auto look = [&](Loading& l) {
        if (l.code != result::Unexpected) {
            return;
        }
        EXPECT_EQ(l.file.FindPolicy(kProduct), result::NotInitialised);
        LogCapture log;
        ASSERT_EQ(l.file.Load(second), 0);
        const std::vector<LogLine> lines = log.Take();
        const bool productStayed = l.file.Policy(kProduct).Get(u"S", u"N") == TextResult{0, u"first"};
        const bool taskStayed = l.file.Task(kProduct, kTask).Version() == TextResult{0, u"first"};
        EXPECT_EQ(Contains(lines, kProductLine), productStayed) << "the later one is logged";
        EXPECT_EQ(Contains(lines, kTaskLine), taskStayed);
        EXPECT_EQ(l.file.Buffer(), Utf16(FileOf("second"))) << "the document is the later file's";
        products += productStayed ? 1 : 0;
        tasks += taskStayed ? 1 : 0;
        ASSERT_EQ(l.file.Load(second), 0);
        EXPECT_EQ(l.file.Policy(kProduct).Get(u"S", u"N"), (TextResult{0, u"second"}))
            << "a load of an object that has a file drops everything first";
        EXPECT_EQ(l.file.Task(kProduct, kTask).Version(), (TextResult{0, u"second"}));
    };
    WithEachAllocationFailing([&] { return std::make_unique<Loading>(first); }, load, look);
    EXPECT_GT(products, 0);
    EXPECT_GT(tasks, 0);
    EXPECT_GT(products, tasks) << "products are indexed first";
}

TEST(HalfWay, AddOfATaskThatFailsAfterItsStamp_RaisesTheVersionAllTheSame)
{
    const FixedClock clock;
    const TempFolder folder;
    const std::u16string path = folder.Write(u"policy.xml", "<R><TaskRoot version='5'/></R>");
    int raised = 0;
    const auto add = [](Adding& a) { a.code = a.file.Object()->AddTask(&a.task, 1); };
    const auto look = [&](const Adding& a) {
        const bool isStamped = a.file.Buffer().value().find(clock.Stamp()) != std::u16string::npos;
        if (a.code < 0 && isStamped) {
            EXPECT_EQ(a.file.VersionTask(), (TextResult{0, clock.Stamp()}));
            ++raised;
        }
        EXPECT_TRUE(a.code < 0 || a.file.VersionTask() == (TextResult{0, clock.Stamp()}));
    };
    WithEachAllocationFailing([&] { return std::make_unique<Adding>(path); }, add, look);
    EXPECT_GT(raised, 0);
}

TEST(HalfWay, CursorWhoseStoreCouldNotBeFilled_RefusesReadingAndExportsWhatThereIs)
{
    const TempFolder folder;
    int refused = 0;
    const auto open = [](Opening& o) { o.code = o.cursor.Initialize(); };
    const auto look = [&](Opening& o) {
        if (o.code != result::Unexpected) {
            return;
        }
        ++refused;
        std::u16string value;
        EXPECT_EQ(o.cursor.GetSettingValue(u"S", u"N", value), result::CursorNotInitialised);
        EXPECT_EQ(o.cursor.WriteAllSettingsToIniFile(folder.Path(u"out.ini")), result::Success);
    };
    WithEachAllocationFailing([] { return std::make_unique<Opening>(); }, open, look);
    EXPECT_GT(refused, 0);
}

}  // namespace zupm::test
