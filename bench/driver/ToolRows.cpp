#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "bench/Demand.h"
#include "bench/Names.h"
#include "bench/PlainFiles.h"
#include "bench/driver/Rows.h"
#include "bench/driver/ScratchFolder.h"

namespace zupm::bench {

namespace {

constexpr int kProduct = 1;
constexpr int kSetting = 20;
constexpr const char* kSection = "Section0";
constexpr const char* kPython = "/usr/bin/python3";

struct Change {
    std::string product;
    std::string value;
};

using Changes = std::vector<Change>;

/// One way to change settings of a file: what it prepares, and the processes that are measured.
using Method = std::vector<Command> (*)(const Setup& setup, const std::string& file, const Changes& changes);

std::string Script(const char* name)
{
    return std::string(ZUPM_PYTHON_SCRIPTS) + "/" + name;
}

std::string PathOf(const std::string& product)
{
    return "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[@SoftwareID='" + product + "']/Section[@name='" +
           kSection + "']/Setting[@name='" + SettingName(kSetting) + "']";
}

std::string ValueIn(const Setup& setup, const std::string& file, const std::string& product)
{
    const std::string line =
        RunProcess({setup.programs + "/zupolicy", "get", file, product, kSection, SettingName(kSetting)}).output;
    return line.substr(0, line.find('\n'));
}

std::string EditsOf(const std::string& file, const Changes& changes)
{
    std::string edits = file + ".edits";
    std::ofstream lines(edits);
    for (const Change& change : changes) {
        lines << R"({"edit": "set", "softwareId": ")" << change.product << R"(", "section": ")" << kSection
              << R"(", "name": ")" << SettingName(kSetting) << R"(", "value": ")" << change.value << "\"}\n";
    }
    return edits;
}

std::vector<Command> BySet(const Setup& setup, const std::string& file, const Changes& changes)
{
    const Change& change = changes.front();
    return {{setup.programs + "/zupolicy", "set", file, change.product, kSection, SettingName(kSetting), change.value}};
}

std::vector<Command> ByApply(const Setup& setup, const std::string& file, const Changes& changes)
{
    return {{setup.programs + "/zupolicy", "apply", file, "--edits", EditsOf(file, changes)}};
}

std::vector<Command> ByXmlstarlet(const Setup& /*setup*/, const std::string& file, const Changes& changes)
{
    std::vector<Command> commands;
    for (const Change& change : changes) {
        commands.push_back({"xmlstarlet", "ed", "-L", "-u", PathOf(change.product), "-v", change.value, file});
    }
    return commands;
}

std::vector<Command> ByLxml(const Setup& /*setup*/, const std::string& file, const Changes& changes)
{
    return {{kPython, Script("set_with_lxml.py"), file, EditsOf(file, changes)}};
}

std::vector<Command> ByAugtool(const Setup& /*setup*/, const std::string& file, const Changes& changes)
{
    std::string script = file + ".augtool";
    std::ofstream lines(script);
    lines << "set /augeas/load/Xml/lens Xml.lns\nset /augeas/load/Xml/incl " << file << "\nload\n";
    for (const Change& change : changes) {
        lines << "set \"/files" << file << "/PolicyFile/PolicyRoot/PolicyGroup/Policy/Product[#attribute/SoftwareID='"
              << change.product << "']/Section[#attribute/name='" << kSection << "']/Setting[#attribute/name='"
              << SettingName(kSetting) << "']/#text\" \"" << change.value << "\"\n";
    }
    lines << "save\n";
    return {{"augtool", "--noautoload", "-f", script}};
}

Changes ChangesOf(int count, int turn)
{
    Changes changes;
    for (int i = 0; i < count; ++i) {
        changes.push_back({ProductName(kProduct + i), "value " + std::to_string(turn) + "." + std::to_string(i)});
    }
    return changes;
}

/// Changes settings to values that they do not have. Afterwards the file has these values.
Contender Changing(const Setup& setup, std::string name, Method method, const std::string& file, int count)
{
    return {std::move(name), [&setup, method, file, count, turn = 0]() mutable {
                const Changes changes = ChangesOf(count, ++turn);
                double seconds = 0;
                for (const Command& command : method(setup, file, changes)) {
                    seconds += RunProcess(command).seconds;
                }
                for (const Change& change : {changes.front(), changes.back()}) {
                    Demand(ValueIn(setup, file, change.product) == change.value, "the change of " + change.product);
                }
                return Samples{{seconds}, {}};
            }};
}

struct Way {
    const char* name;
    Method method;
};

/// Every contender has a copy of its own: some of them lay the file out anew.
Contest ChangeContest(const Setup& setup, std::size_t bytes, int count, const std::vector<Way>& ways)
{
    Contest contest;
    contest.file = FileOfSize(bytes).path;
    contest.rounds = 7;
    contest.hasFirstTurnForNothing = true;
    for (const Way& way : ways) {
        const std::string copy = ScratchFile(std::to_string(bytes) + "-" + std::to_string(count) + "-" +
                                             std::to_string(contest.contenders.size()) + ".xml");
        std::filesystem::copy_file(contest.file, copy, std::filesystem::copy_options::overwrite_existing);
        contest.contenders.push_back(Changing(setup, way.name, way.method, copy, count));
    }
    return contest;
}

/// A folder of files that differ in one value: most have 60, some another one.
struct Fleet {
    std::string folder;
    std::vector<std::string> files;
    std::string counts;  ///< what both contenders print, without the last line break
};

Fleet MakeFleet(int size)
{
    const std::string text = BytesOf(FileOfSize(20'000).path);
    const std::string old = ">value of setting " + std::to_string(kSetting) + "<";
    const std::size_t at = text.find(old, text.find(ProductName(kProduct)));
    Demand(at != std::string::npos, "finding the setting");
    Fleet fleet{ScratchFile("fleet"), {}, {}};
    std::filesystem::create_directory(fleet.folder);
    int fifteens = 0;
    int others = 0;
    for (int i = 0; i < size; ++i) {
        const char* const value = i % 1000 == 7 ? "600" : i % 50 == 3 ? "15" : "60";
        fifteens += std::string_view(value) == "15" ? 1 : 0;
        others += std::string_view(value) == "600" ? 1 : 0;
        fleet.files.push_back(fleet.folder + "/" + std::to_string(i) + ".xml");
        std::ofstream(fleet.files.back(), std::ios::binary)
            << std::string(text).replace(at, old.size(), std::string(">") + value + "<");
    }
    std::ostringstream counts;
    counts << "\"60\": " << size - fifteens - others << " files\n\"15\": " << fifteens << " files\n\"600\": " << others
           << " files";
    fleet.counts = counts.str();
    return fleet;
}

Contest CountContest(const Setup& setup)
{
    const Fleet fleet = MakeFleet(10'000);
    Command query = {setup.programs + "/zupolicy", "query"};
    query.insert(query.end(), fleet.files.begin(), fleet.files.end());
    for (const std::string& word :
         {std::string("--software"), ProductName(kProduct), std::string("--section"), std::string(kSection),
          std::string("--name"), SettingName(kSetting), std::string("--count")}) {
        query.push_back(word);
    }
    Contest contest;
    contest.file = fleet.files.front();
    contest.rounds = 7;
    contest.hasFirstTurnForNothing = true;
    contest.contenders = {WholeProcess("zupolicy query --count", query, fleet.counts),
                          WholeProcess("Python with lxml, a process for each processor",
                                       {kPython, Script("count_with_lxml.py"), fleet.folder, ProductName(kProduct),
                                        kSection, SettingName(kSetting)},
                                       fleet.counts)};
    return contest;
}

/// The same settings as INI file: a section for each product.
std::string IniOf(int products)
{
    std::string path = ScratchFile("sample.ini");
    std::ofstream lines(path);
    for (int product = 0; product < products; ++product) {
        lines << "[" << ProductName(product) << "]\n";
        for (int setting = 0; setting < 40; ++setting) {
            lines << SettingName(setting) << "=value of setting " << setting << "\n";
        }
    }
    return path;
}

Contest GetContest(const Setup& setup)
{
    const SampleFile& sample = FileOfSize(20'000);
    const std::string value = "value of setting " + std::to_string(kSetting);
    const std::string product = ProductName(kProduct);
    Contest contest;
    contest.file = sample.path;
    contest.rounds = 41;
    contest.hasFirstTurnForNothing = true;
    contest.contenders = {
        WholeProcess("zupolicy",
                     {setup.programs + "/zupolicy", "get", sample.path, product, kSection, SettingName(kSetting)},
                     value),
        WholeProcess("crudini --get, INI file",
                     {"crudini", "--get", IniOf(sample.products), product, SettingName(kSetting)}, value),
        WholeProcess("xmlstarlet sel", {"xmlstarlet", "sel", "-t", "-v", PathOf(product), "-n", sample.path}, value)};
    return contest;
}

}  // namespace

std::vector<Row> ToolRows(const Setup& setup)
{
    constexpr std::size_t kMegabyte = 1'000'000;
    constexpr int kManyEdits = 50;
    return {
        {"change one setting of 17 MB", true,
         [&setup] {
             return ChangeContest(
                 setup, 17 * kMegabyte, 1,
                 {{"zupolicy set", BySet}, {"xmlstarlet ed", ByXmlstarlet}, {"Python with lxml", ByLxml}});
         }},
        {"change one setting of 1 MB", true,
         [&setup] {
             return ChangeContest(setup, kMegabyte, 1, {{"zupolicy set", BySet}, {"augtool", ByAugtool}});
         }},
        {"50 edits of one file of 1 MB", true,
         [&setup] {
             return ChangeContest(
                 setup, kMegabyte, kManyEdits,
                 {{"zupolicy apply", ByApply}, {"50 times xmlstarlet ed", ByXmlstarlet}, {"Python with lxml", ByLxml}});
         }},
        {"count the values of a setting over 10,000 files of 20 KB", true, [&setup] { return CountContest(setup); }},
        {"get one setting of 20 KB", true, [&setup] { return GetContest(setup); }},
    };
}

}  // namespace zupm::bench
