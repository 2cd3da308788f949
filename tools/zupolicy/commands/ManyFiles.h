/// Commands that work on many files at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tools/zupolicy/client/Terminal.h"
#include "tools/zupolicy/commands/InOrder.h"
#include "tools/zupolicy/report/Progress.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// Calls `make(path)` for each file on as many threads as `jobs` says, each with a copy of `make` of its own, and
/// `print(result)` for each in the order of the files, one at a time. A person at a terminal sees how far it is, unless
/// `isQuiet`. Throws what InOrder throws.
template <class Make, class Print>
void ForEachFile(const std::vector<std::string>& files, unsigned jobs, Streams streams, bool isQuiet, Make make,
                 const Print& print)
{
    Progress progress(streams, files.size(), !isQuiet && IsTerminal(StandardStream::Error));
    InOrder(
        files.size(), jobs,
        [&files, make = std::move(make)](std::size_t number) mutable { return make(files[number]); },
        [&](std::size_t /*number*/, const auto& result) { progress.Step([&] { print(result); }); })
        .Run();
}

/// The jobs of commands that only read: the processors, at most 8.
[[nodiscard]] inline unsigned ReadingJobs()
{
    return std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
}

}  // namespace zupm::tool
