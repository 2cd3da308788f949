#include <sstream>
#include <utility>

#include "bench/driver/Rows.h"

namespace zupm::bench {

namespace {

constexpr std::size_t kMegabyte = 1'000'000;
constexpr std::size_t kCommon = 16 * kMegabyte;
constexpr std::size_t kLarge = 160 * kMegabyte;

using MakeFile = std::function<std::string()>;

std::string Regular()
{
    return FileOfSize(kCommon).path;
}

Row LoadRow(const Setup& setup, const std::string& what, Heap heap, MakeFile file)
{
    return {"load " + what + (heap == Heap::Kept ? ", heap kept" : ", fresh process"), true,
            [&setup, heap, file = std::move(file)] {
                return ContestOf(setup, {"load", heap, file()}, {"pugixml", "pugixml full", "libxml2", "RapidXML"});
            }};
}

/// RapidXML reads UTF-8 only.
Row Utf16Row(const Setup& setup, Heap heap)
{
    return {std::string("load 16 MB UTF-16") + (heap == Heap::Kept ? ", heap kept" : ", fresh process"), true,
            [&setup, heap] {
                return ContestOf(setup, {"load", heap, FileOfSize(kCommon, true).path},
                                 {"pugixml", "pugixml full", "libxml2"});
            }};
}

Row LargeRow(const Setup& setup)
{
    Row row = LoadRow(setup, "160 MB UTF-8", Heap::Fresh, [] { return FileOfSize(kLarge).path; });
    row.isQuick = false;
    row.prepare = [prepare = row.prepare] {
        Contest contest = prepare();
        contest.isPeakShown = true;
        contest.rounds = 7;
        return contest;
    };
    return row;
}

Contender Scanner(const Setup& setup, const std::string& form, const std::string& file)
{
    const Command command = {setup.programs + "/bench_scan_sample", form, file, "2", "5"};
    return {"component", [command] { return SamplesOf(RunProcess(command).output); }};
}

/// The component always takes the fastest form. So its document library alone shows what the others take: the file is
/// read and scanned into records, without the component's indexes.
Row FormRow(const Setup& setup, const std::string& form)
{
    return {"read 16 MB and scan it into records with " + form + ", heap kept", false, [&setup, form] {
                const std::string file = Regular();
                Contest contest = ContestOf(setup, {"load", Heap::Kept, file}, {"pugixml", "pugixml full"});
                contest.contenders.front() = Scanner(setup, form, file);
                return contest;
            }};
}

/// The forms of the scanner that this processor can run.
std::vector<std::string> Forms(const Setup& setup)
{
    std::istringstream lines(RunProcess({setup.programs + "/bench_scan_sample"}).output);
    std::vector<std::string> forms;
    for (std::string form; lines >> form;) {
        forms.push_back(form);
    }
    return forms;
}

}  // namespace

std::vector<Row> LoadRows(const Setup& setup)
{
    std::vector<Row> rows;
    for (const Heap heap : {Heap::Kept, Heap::Fresh}) {
        rows.push_back(LoadRow(setup, "16 MB UTF-8", heap, Regular));
        rows.push_back(Utf16Row(setup, heap));
        rows.push_back(LoadRow(setup, "16 MB irregular", heap, [] { return IrregularFile(kCommon).path; }));
        rows.push_back(
            LoadRow(setup, "16 MB, 70 % of words not ASCII", heap, [] { return ForeignWordsFile(kCommon).path; }));
        rows.push_back(LoadRow(setup, "1 MB UTF-8", heap, [] { return FileOfSize(kMegabyte).path; }));
        rows.push_back(LoadRow(setup, "20 KB UTF-8", heap, [] { return FileOfSize(20'000).path; }));
    }
    rows.push_back(LargeRow(setup));
    if (setup.other.empty()) {
        for (const std::string& form : Forms(setup)) {
            rows.push_back(FormRow(setup, form));
        }
    }
    return rows;
}

}  // namespace zupm::bench
