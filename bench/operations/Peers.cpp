#include "bench/operations/Peers.h"

#include "bench/Demand.h"

namespace zupm::bench {

namespace {

struct Row {
    std::string_view contender;
    LoadTree load;
};

constexpr Row kLoaders[] = {
    {"libxml2", LoadWithLibxml2},
    {"pugixml", LoadWithPugixml},
    {"pugixml full", LoadWithPugixmlFull},
    {"RapidXML", LoadWithRapidxml},
};

}  // namespace

void Tree::Set(const std::string&, const std::string&, const std::string&)
{
    Demand(false, "changing a tree that is only read");
}

void Tree::Write(const std::string&)
{
    Demand(false, "writing a tree that is only read");
}

LoadTree TreeLoaderOf(std::string_view contender)
{
    for (const Row& row : kLoaders) {
        if (row.contender == contender) {
            return row.load;
        }
    }
    Demand(false, "finding the peer");
    return nullptr;
}

}  // namespace zupm::bench
