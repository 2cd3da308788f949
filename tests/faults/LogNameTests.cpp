// The name under which each operation logs the exception that ended it.
#include <functional>
#include <memory>
#include <set>

#include "policy/CPolicyData.h"
#include "settings/CXMLDataObject.h"
#include "task/CTaskData.h"
#include "tests/faults/EachAllocation.h"
#include "tests/support/FixedClock.h"
#include "tests/support/LogCapture.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"
#include "xml/Document.h"
#include "xml/Node.h"
#include "xml/Parser.h"
#include "xml/XmlText.h"

namespace zupm::test {

namespace {

using Names = std::set<std::string>;

constexpr std::string_view kFile =
    "<R><PolicyRoot><PolicyGroup><Policy><Product SoftwareID='a product with a long name'>"
    "<Section name='a section with a long name'><Setting name='a setting with a long name'>a long value of it</Setting>"
    "</Section></Product></Policy></PolicyGroup></PolicyRoot>"
    "<TaskRoot><TaskGroup SoftwareID='a product with a long name' TaskID='a task with a long name'><Task>"
    "<Section name='a section with a long name'/></Task></TaskGroup></TaskRoot></R>";

constexpr std::u16string_view kProduct = u"a product with a long name";
constexpr std::u16string_view kSection = u"a section with a long name";
constexpr std::u16string_view kSetting = u"a setting with a long name";

/// A document and what is built on it; `file` and `iniPath` for the operations that need them.
struct Stage {
    explicit Stage(const TempFolder& folder) : iniPath(folder.Path(u"out.ini")), path(folder.Path(u"policy.xml"))
    {
        EXPECT_EQ(store.Initialize(), 0);
    }

    /// The first element of that name.
    [[nodiscard]] AdvXMLParser::Element Find(std::u16string_view name) const
    {
        AdvXMLParser::Element element = document->GetRoot();
        for (const std::u16string_view step : {name == u"Task" || name == u"TaskGroup" ? u"TaskRoot" : u"PolicyRoot",
                                               name == u"Task" || name == u"TaskGroup" ? u"TaskGroup" : u"PolicyGroup",
                                               name == u"Task" ? u"Task" : u"Policy", u"Product"}) {
            for (const AdvXMLParser::Element child : AdvXMLParser::ElementChildren(element)) {
                if (child.NameIs(step)) {
                    element = child;
                    break;
                }
            }
            if (element.NameIs(name)) {
                return element;
            }
        }
        return {};
    }

    std::unique_ptr<AdvXMLParser::Document> document =
        AdvXMLParser::Parser().Parse(AdvXMLParser::XmlText(std::string(kFile)));
    std::u16string iniPath;
    Bstr path;
    PolicyFileClient file;
    CXMLDataObject store{Find(u"Product"), nullptr};
    CPolicyData policy{nullptr};
    CTaskData task{nullptr};
    AdvXMLParser::Document target{u"TaskGroup"};
    std::u16string text;
    std::uint64_t version = 0;
    result::Code code = 0;
};

struct NameRow {
    const char* label;
    void (*prepare)(Stage& stage);
    void (*run)(Stage& stage);
    Names names;   ///< each is logged at least once
    Names others;  ///< what it calls may log these
};

void Nothing(Stage&) {}

const NameRow kRows[] = {
    {"store Initialize",
     [](Stage& s) { s.store.Deinitialize(); },
     [](Stage& s) { s.code = s.store.Initialize(); },
     {"CXMLDataObject::Initialize()"},
     {}},
    {"store GetSettingValue",
     Nothing,
     [](Stage& s) { s.code = s.store.GetSettingValue(kSection, kSetting, s.text); },
     {"CXMLDataObject::GetSettingValue()"},
     {}},
    {"store SetSettingValue",
     Nothing,
     [](Stage& s) { s.code = s.store.SetSettingValue(kSection, kSetting, u"another long value", 0); },
     {"CXMLDataObject::SetSettingValue()"},
     {}},
    {"store AddSetting",
     Nothing,
     [](Stage& s) { static_cast<void>(s.store.AddSetting(u"another long section", u"its long setting", s.code)); },
     {"CXMLDataObject::AddSetting()"},
     {"CXMLDataObject::Initialize()"}},
    {"store WriteAllSettingsToIniFile",
     Nothing,
     [](Stage& s) { s.code = s.store.WriteAllSettingsToIniFile(s.iniPath); },
     {"CXMLDataObject::WriteAllSettingsToIniFile()"},
     {}},
    {"policy data Initialize",
     Nothing,
     [](Stage& s) { s.code = s.policy.Initialize(s.Find(u"Policy"), kProduct); },
     {"CPolicyData::Initialize()"},
     {"CXMLDataObject::Initialize()"}},
    {"task data Initialize",
     Nothing,
     [](Stage& s) { s.code = s.task.Initialize(s.Find(u"TaskGroup"), s.Find(u"Task")); },
     {"CTaskData::Initialize()"},
     {"CXMLDataObject::Initialize()"}},
    {"task data CopyData",
     [](Stage& s) { s.code = s.task.Initialize(s.Find(u"TaskGroup"), s.Find(u"Task")); },
     [](Stage& s) { s.code = s.task.CopyData(s.target.GetRoot(), s.version); },
     {"CTaskData::CopyData()"},
     {"CXMLDataObject::Initialize()", "CXMLDataObject::AddSetting()", "CXMLDataObject::SetSettingValue()"}},
    {"file InitializeFile",
     Nothing,
     [](Stage& s) { s.code = s.file.Object()->InitializeFile(s.path.Get(), 0); },
     {"CPolicyFile::InitializePolicyMap()", "CPolicyFile::InitializeTaskMap()"},
     {}},
};

/// The operation that a level-1 line names; the whole line when it has no text of the resource module's.
std::string NameIn(const LogLine& line)
{
    constexpr std::string_view kText = "Unexpected exception in ";
    return line.text.starts_with(kText) ? line.text.substr(kText.size()) : line.text;
}

/// Every name that a row's operation logs at the level of exceptions.
Names LoggedBy(const NameRow& row, const TempFolder& folder)
{
    Names names;
    LogCapture log;
    WithEachAllocationFailing(
        [&] {
            auto stage = std::make_unique<Stage>(folder);
            row.prepare(*stage);
            static_cast<void>(log.Take());
            return stage;
        },
        row.run,
        [&](const Stage&) {
            for (const LogLine& line : log.Take()) {
                if (line.level == 1) {
                    names.insert(NameIn(line));
                }
            }
        });
    return names;
}

}  // namespace

TEST(LogNames, OfOperationsThatAnExceptionEnded_AreTheirOwn)
{
    const FixedClock clock;
    const TempFolder folder;
    folder.Write(u"policy.xml", kFile);
    for (const NameRow& row : kRows) {
        SCOPED_TRACE(row.label);
        const Names logged = LoggedBy(row, folder);
        for (const std::string& name : row.names) {
            EXPECT_TRUE(logged.contains(name)) << name << " was never logged";
        }
        for (const std::string& name : logged) {
            EXPECT_TRUE(row.names.contains(name) || row.others.contains(name)) << name;
        }
    }
}

}  // namespace zupm::test
