// Several processes that load and save one file.
#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <thread>

#include "PolicyVersions.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Effort.h"
#include "tests/support/FixedClock.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

constexpr std::size_t kProcesses = 8;
constexpr int kSeconds = 2;

}  // namespace

TEST(Sharing, EightProcessesLoadAndSaveOneFile_AndEachLoadSeesAWholeVersion)
{
    const FixedClock clock;
    const TempFolder folder;
    const TempFolder streams;
    folder.Write(u"policy.xml", PolicyVersions().Bytes(0));
    const std::string path = Utf8(folder.Path(u"policy.xml"));
    const std::string seconds = std::to_string(Effort("ZUPM_PROCESS_SECONDS", kSeconds));

    std::vector<ChildRun> runs(kProcesses);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kProcesses; ++i) {
        threads.emplace_back([&, i] {
            runs[i] = RunChild({.program = ZUPM_SHARER, .folder = streams.Folder(), .outDevice = {}},
                               {path, seconds, std::to_string(i)});
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    int loads = 0;
    int saves = 0;
    int refused = 0;
    for (const ChildRun& run : runs) {
        EXPECT_EQ(run.exitCode, 0) << run.messages;
        int counts[3]{};
        std::istringstream(run.out) >> counts[0] >> counts[1] >> counts[2];
        EXPECT_GT(counts[0], 0);
        loads += counts[0];
        saves += counts[1];
        refused += counts[2];
    }
    EXPECT_GT(saves, 0);
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"policy.xml"}) << "no temporary file stays";
    std::cout << loads << " loads, each of a whole version; " << saves << " saves, and " << refused
              << " refused because the file was open\n";
}

}  // namespace zupm::test
