#include "EditCases.h"

#include <stdexcept>

#include "EditCaseTexts.h"

namespace zupm::test {

namespace {

void Require(HRESULT code)
{
    if (code != 0) {
        throw std::runtime_error("a step gave " + std::to_string(code));
    }
}

/// Takes a policy out, changes it, hands it back.
template <class Edit>
std::function<void(PolicyFileClient&)> OfPolicy(std::u16string softwareId, Edit edit)
{
    return [softwareId, edit](PolicyFileClient& file) {
        ProductClient product = file.Policy(softwareId);
        edit(product);
        Require(file.Add(product));
    };
}

template <class Edit>
std::function<void(PolicyFileClient&)> OfTask(std::u16string softwareId, std::u16string taskId, Edit edit)
{
    return [softwareId, taskId, edit](PolicyFileClient& file) {
        TaskClient task = file.Task(softwareId, taskId);
        edit(task);
        Require(file.Add(task));
    };
}

std::function<void(ProductClient&)> Set(std::u16string section, std::u16string name, std::u16string value)
{
    return [=](ProductClient& product) { Require(product.Put(section, name, value)); };
}

std::vector<EditCase> SettingCases()
{
    return {
        {"ChangeSetting", OfPolicy(u"Updater", Set(u"General", u"Interval", u"24")),
         Stamped({{Setting("Interval", "12"), Setting("Interval", "24")}})},
        {"ChangeSettingToAValueThatNeedsEscapes",
         OfPolicy(u"Updater", Set(u"General", u"Interval", u"<a> & \"b\"\r\u00FC")),
         Stamped({{Setting("Interval", "12"), Setting("Interval", "&lt;a&gt; &amp; \"b\"&#13;\u00FC")}})},
        {"ChangeSettingHeldAsCdata", OfPolicy(u"Updater", Set(u"General", u"Note", u"a > b")),
         Stamped({{Setting("Note", "<![CDATA[a < b]]>"), Setting("Note", "a &gt; b")}})},
        {"SetSettingToTheValueThatItHas", OfPolicy(u"Updater", Set(u"General", u"Interval", u"12")), Stamped({})},
        {"EmptySetting", OfPolicy(u"Updater", Set(u"Proxy", u"Server", u"")),
         Stamped({{Setting("Server", "gr\u00F6\u00DFe.example"), Setting("Server", "")}})},
        {"AddSetting", OfPolicy(u"Updater", Set(u"General", u"Retries", u"3")),
         Stamped({{kLastGeneral, kLastGeneral + Line(6, Setting("Retries", "3"))}})},
        {"AddSection", OfPolicy(u"Updater", Set(u"Window", u"Start", u"22:00")),
         Stamped({{kProxy, kProxy + Section("Window", Setting("Start", "22:00"))}})},
        {"RemoveSetting",
         OfPolicy(u"Updater", [](ProductClient& product) { Require(product.RemoveSetting(u"General", u"Interval")); }),
         Stamped({{Line(6, Setting("Interval", "12")), ""}})},
        {"RemoveSection",
         OfPolicy(u"Updater", [](ProductClient& product) { Require(product.RemoveSection(u"Proxy")); }),
         Stamped({{kProxy, ""}})},
        {"SeveralEditsAtOnce",
         OfPolicy(u"Updater",
                  [](ProductClient& product) {
                      Require(product.RemoveSection(u"Proxy"));
                      Require(product.Put(u"Window", u"Start", u"22:00"));
                      Require(product.Put(u"General", u"Interval", u"24"));
                  }),
         Stamped({{kProxy, Section("Window", Setting("Start", "22:00"))},
                  {Setting("Interval", "12"), Setting("Interval", "24")}})},
    };
}

std::vector<EditCase> PolicyCases()
{
    return {
        {"NoEdit", [](PolicyFileClient&) {}, {}},
        {"RemovePolicy", [](PolicyFileClient& file) { Require(file.RemovePolicy(u"Scanner")); }, {{kScanner, ""}}},
        {"RemoveLastPolicy", [](PolicyFileClient& file) { Require(file.RemovePolicy(u"Updater")); }, {{kUpdater, ""}}},
        {"AddPolicyWithoutSections", [](PolicyFileClient& file) { Require(file.Add(file.NewPolicy(u"Agent"))); },
         Stamped({{kUpdaterEnd, kUpdaterEnd + Line(4, "<Product SoftwareID=\"Agent\"/>")}})},
        {"AddPolicy",
         [](PolicyFileClient& file) {
             ProductClient product = file.NewPolicy(u"Agent");
             Require(product.Put(u"Window", u"Start", u"22:00"));
             Require(file.Add(product));
         },
         Stamped({{kUpdaterEnd, kUpdaterEnd + Line(4, "<Product SoftwareID=\"Agent\">") +
                                    Section("Window", Setting("Start", "22:00")) + Line(4, "</Product>")}})},
        {"ReplacedPolicyBecomesTheLast", OfPolicy(u"Scanner", Set(u"General", u"Mode", u"quick")),
         Stamped({{kScanner, ""}, {kUpdaterEnd, kUpdaterEnd + kQuickScanner}})},
        {"PolicyRemovedAndAddedAgain",
         [](PolicyFileClient& file) {
             const ProductClient product = file.Policy(u"Updater");
             Require(file.RemovePolicy(u"Updater"));
             Require(file.Add(product));
         },
         Stamped({})},
    };
}

std::vector<EditCase> TaskCases()
{
    return {
        {"RemoveTask",
         [](PolicyFileClient& file) { Require(file.RemoveTask(u"Updater", u"Weekly")); },
         {{kWeekly, ""}}},
        {"RemoveFirstTask",
         [](PolicyFileClient& file) { Require(file.RemoveTask(u"Scanner", u"Daily")); },
         {{kDaily, ""}}},
        {"ReplaceTask",
         OfTask(u"Scanner", u"Daily", [](TaskClient& task) { Require(task.Put(u"Paths", u"Path1", u"/home")); }),
         StampedDaily({{Setting("Path1", "/"), Setting("Path1", "/home")}})},
        {"AddSettingToTask",
         OfTask(u"Scanner", u"Daily", [](TaskClient& task) { Require(task.Put(u"Paths", u"Path2", u"/home")); }),
         StampedDaily({{kPath1, kPath1 + Line(5, Setting("Path2", "/home"))}})},
        {"RemoveSectionOfTask",
         OfTask(u"Scanner", u"Daily", [](TaskClient& task) { Require(task.RemoveSection(u"Paths")); }),
         StampedDaily({{kPaths, ""}})},
        {"RenameTask",
         OfTask(u"Scanner", u"Daily", [](TaskClient& task) { Require(task.PutDisplayName(u"Night \u00FC")); }),
         StampedDaily({{"DisplayName=\"Daily scan\"", "DisplayName=\"Night \u00FC\""},
                       {Setting("TaskName", "Daily scan"), Setting("TaskName", "Night \u00FC")}})},
        {"AddTask",
         [](PolicyFileClient& file) {
             TaskClient task = file.NewTask(u"Agent", u"Once");
             Require(task.Put(u"Paths", u"Path1", u"/"));
             Require(file.Add(task));
         },
         StampedTasks({{kWeekly, kWeekly + kOnce}})},
    };
}

std::vector<EditCase> MakeCases()
{
    std::vector<EditCase> all;
    for (const std::vector<EditCase>& part : {SettingCases(), PolicyCases(), TaskCases()}) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

}  // namespace

void PrintTo(const EditCase& edit, std::ostream* out)
{
    *out << edit.label;
}

const std::vector<EditCase>& EditCases()
{
    static const std::vector<EditCase> cases = MakeCases();
    return cases;
}

}  // namespace zupm::test
