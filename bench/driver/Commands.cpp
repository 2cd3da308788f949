#include "bench/driver/Commands.h"

#include <cstdint>
#include <filesystem>
#include <sstream>
#include <utility>

#include "bench/Demand.h"

namespace zupm::bench {

namespace {

/// How many samples a row takes of each contender.
struct Plan {
    int rounds;
    int warm;
    int counted;
};

Plan PlanFor(const Setup& setup, Heap heap)
{
    if (heap == Heap::Fresh) {
        return {setup.isQuick ? 7 : 9, 0, 1};
    }
    return setup.isQuick ? Plan{2, 2, 4} : Plan{3, 2, 5};
}

Contender SampledProcess(const Setup& setup, const Work& work, const std::string& name, const std::string& libraries)
{
    const Plan plan = PlanFor(setup, work.heap);
    const std::string performer = libraries.empty() ? name : "component";
    const Command command = {setup.programs + "/bench_sample",
                             work.operation,
                             performer,
                             work.file,
                             std::to_string(work.number),
                             work.heap == Heap::Kept ? "kept" : "fresh",
                             std::to_string(plan.warm),
                             std::to_string(plan.counted)};
    return {name, [=] { return SamplesOf(RunProcess(command, libraries).output); }};
}

/// The host of a virtual machine gives it memory when that is used for the first time, and takes back what is free for
/// some seconds. That costs more than a load. So another process uses as much as the largest peer needs before a turn.
std::function<void()> UseOfMemory(const Setup& setup, const std::string& file)
{
    constexpr std::uintmax_t kMostBytesOfAByte = 12;
    const std::string bytes = std::to_string(kMostBytesOfAByte * std::filesystem::file_size(file));
    return [command = Command{setup.programs + "/bench_sample", "use-memory", bytes}] { (void)RunProcess(command); };
}

}  // namespace

Samples SamplesOf(const std::string& output)
{
    Samples samples;
    std::istringstream lines(output);
    for (double value = 0; lines >> value;) {
        samples.seconds.push_back(value);
    }
    Demand(samples.seconds.size() >= 2, "reading what a measured process prints");
    samples.peakBytes.push_back(samples.seconds.back());
    samples.seconds.pop_back();
    return samples;
}

Contest ContestOf(const Setup& setup, const Work& work, std::initializer_list<const char*> peers)
{
    Contest contest;
    contest.file = work.file;
    contest.rounds = PlanFor(setup, work.heap).rounds;
    if (work.heap == Heap::Fresh) {
        contest.hasFirstTurnForNothing = true;
        contest.beforeATurn = UseOfMemory(setup, work.file);
    }
    contest.contenders.push_back(SampledProcess(setup, work, "component", ""));
    if (!setup.other.empty()) {
        contest.contenders.push_back(SampledProcess(setup, work, "other build", setup.other));
        return contest;
    }
    for (const char* peer : peers) {
        contest.contenders.push_back(SampledProcess(setup, work, peer, ""));
    }
    return contest;
}

Contender WholeProcess(std::string name, Command command, std::string expected)
{
    return {std::move(name), [=] {
                const Finished finished = RunProcess(command);
                Demand(expected.empty() || finished.output == expected + "\n", "the answer of " + command.front());
                return Samples{{finished.seconds}, {}};
            }};
}

}  // namespace zupm::bench
