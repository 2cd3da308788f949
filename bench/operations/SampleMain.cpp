// A measured process: prepares one operation and prints how long it takes. zupm_bench starts it.
//
//   bench_sample OPERATION CONTENDER FILE NUMBER kept|fresh WARM COUNTED
//   bench_sample use-memory BYTES
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "bench/operations/Operations.h"

namespace {

using namespace zupm::bench;

struct Row {
    std::string_view name;
    PrepareOperation prepare;
};

constexpr Row kOperations[] = {
    {"load", Load},
    {"take-all", TakeEverythingOut},
    {"get-policy", GetPolicy},
    {"get-setting", GetSectionSetting},
    {"put-setting", PutExistingSetting},
    {"put-new-setting", PutAndRemoveNewSetting},
    {"add-policy", AddPolicy},
    {"add-task", AddTask},
    {"enumerate", EnumerateTasks},
    {"write", WriteFile},
    {"write-buffer", WriteFileBuffer},
    {"edit-and-write", EditAndWrite},
};

/// Writes to every page of memory that the process does not need. Afterwards the system has these pages at hand.
void UseMemory(std::size_t bytes)
{
    const std::string memory(bytes, ' ');
    Use(memory.data());
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::string_view(argv[1]) == "use-memory") {
        UseMemory(std::strtoull(argv[2], nullptr, 10));
        return 0;
    }
    Demand(argc == 8, "bench_sample: reading the command line");
    const bool isHeapKept = std::strcmp(argv[5], "kept") == 0;
    if (isHeapKept) {
        KeepTheHeap();
    }
    for (const Row& row : kOperations) {
        if (row.name == argv[1]) {
            Operation operation = row.prepare({argv[2], argv[3], std::atoi(argv[4])});
            if (!isHeapKept) {
                operation.repetitions = 1;  // the second one would find pages that are in memory
            }
            PrintSamples(operation, std::atoi(argv[6]), std::atoi(argv[7]));
            return 0;
        }
    }
    Demand(false, "bench_sample: finding the operation");
}
