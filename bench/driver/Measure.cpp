#include "bench/driver/Measure.h"

#include <algorithm>

#include "bench/Demand.h"

namespace zupm::bench {

namespace {

constexpr std::size_t kFewestSamples = 7;

double MedianOf(std::vector<double> values)
{
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void Append(std::vector<double>& all, const std::vector<double>& more)
{
    all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

std::vector<Result> Measure(const Contest& contest)
{
    std::vector<Samples> samples(contest.contenders.size());
    for (int round = contest.hasFirstTurnForNothing ? -1 : 0; round < contest.rounds; ++round) {
        for (std::size_t i = 0; i < samples.size(); ++i) {
            if (contest.beforeATurn) {
                contest.beforeATurn();
            }
            const Samples turn = contest.contenders[i].takeTurn();
            if (round >= 0) {
                Append(samples[i].seconds, turn.seconds);
                Append(samples[i].peakBytes, turn.peakBytes);
            }
        }
    }
    std::vector<Result> results;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        Demand(samples[i].seconds.size() >= kFewestSamples, "taking enough samples");
        results.push_back({contest.contenders[i].name, MedianOf(samples[i].seconds), MedianOf(samples[i].peakBytes)});
    }
    return results;
}

}  // namespace zupm::bench
