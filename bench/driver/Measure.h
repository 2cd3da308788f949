/// Rows of the table and how they are measured.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace zupm::bench {

struct Samples {
    std::vector<double> seconds;
    std::vector<double> peakBytes;  ///< empty where nobody measures them
};

struct Contender {
    std::string name;
    std::function<Samples()> takeTurn;
};

/// What a row needs once it is chosen.
struct Contest {
    std::string file;                   ///< the file that it works on
    int rounds = 0;                     ///< turns of each contender
    std::vector<Contender> contenders;  ///< the component first
    bool isPeakShown = false;
    bool hasFirstTurnForNothing = false;     ///< one turn of each before those that count
    std::function<void()> beforeATurn = {};  ///< not measured; may be empty
};

struct Row {
    std::string operation;
    bool isQuick = true;  ///< part of the short run
    std::function<Contest()> prepare;
};

struct Result {
    std::string contender;
    double seconds = 0;    ///< the median
    double peakBytes = 0;  ///< the median, 0 where nobody measures it
};

/// Contenders take turns, so that a busy machine is busy for all of them.
[[nodiscard]] std::vector<Result> Measure(const Contest& contest);

}  // namespace zupm::bench
