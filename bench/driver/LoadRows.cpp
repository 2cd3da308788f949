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

/// Reading and scanning into records, the forms that this processor does not choose beside the one that it does.
Row FormsRow(const Setup& setup)
{
    return {"read and scan 16 MB into records (AVX2, without indexes), heap kept", false, [&setup] {
                Contest contest{Regular(), 3, {}, false, false};
                for (const char* form : {"AVX2", "SSE2", "plain"}) {
                    const Command command = {setup.programs + "/bench_scan_sample", form, contest.file, "2", "5"};
                    contest.contenders.push_back({std::string("the scanner, ") + form,
                                                  [command] { return SamplesOf(RunProcess(command).output); }});
                }
                return contest;
            }};
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
        rows.push_back(FormsRow(setup));
    }
    return rows;
}

}  // namespace zupm::bench
