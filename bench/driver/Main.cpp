// Measures the component and its peers and prints one table in Markdown.
//
//   zupm_bench [--tools] [--quick] [--only TEXT] [--compare FOLDER]
//
//   --tools    only the rows that compare the tool with what scripts use
//   --quick    the rows that take seconds, with fewer samples
//   --only     the rows whose operation has TEXT in its name
//   --compare  instead of the peers, the build of the component whose libraries and zupolicy are in FOLDER
#include <cstdio>
#include <filesystem>
#include <optional>

#include "bench/Demand.h"
#include "bench/driver/Rows.h"
#include "bench/driver/Surroundings.h"
#include "bench/driver/Table.h"

namespace {

using namespace zupm::bench;

struct Options {
    Setup setup;
    std::string only;
    bool isToolsOnly = false;
};

std::optional<Options> OptionsOf(int argc, char** argv)
{
    Options options;
    options.setup.programs = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--quick") {
            options.setup.isQuick = true;
        } else if (word == "--tools") {
            options.isToolsOnly = true;
        } else if (word == "--only" && i + 1 < argc) {
            options.only = argv[++i];
        } else if (word == "--compare" && i + 1 < argc) {
            options.setup.other = std::filesystem::canonical(argv[++i]).string();
        } else {
            return std::nullopt;
        }
    }
    return options;
}

void Run(const Options& options, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        const bool isChosen = row.isQuick || !options.setup.isQuick;
        if (isChosen && row.operation.find(options.only) != std::string::npos) {
            const Contest contest = row.prepare();
            PrintRow(row.operation, contest, Measure(contest));
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    const std::optional<Options> options = OptionsOf(argc, argv);
    if (!options) {
        std::fprintf(stderr, "usage: zupm_bench [--tools] [--quick] [--only TEXT] [--compare FOLDER]\n");
        return 2;
    }
    std::printf("%s\n\n", Surroundings().c_str());
    PrintTableHead();
    if (options->isToolsOnly) {
        Run(*options, ToolRows(options->setup));
        return 0;
    }
    Run(*options, LoadRows(options->setup));
    Run(*options, ObjectRows(options->setup));
    Run(*options, ProcessRows(options->setup));
    Run(*options, PythonRows(options->setup));
    return 0;
}
