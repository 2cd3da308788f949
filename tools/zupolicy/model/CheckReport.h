/// What `check` found out about one file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/FileContents.h"

namespace zupm::tool {

/// How much a sound file holds.
struct Counts {
    std::size_t policies = 0;
    std::size_t tasks = 0;
    std::size_t sections = 0;
    std::size_t settings = 0;
};

/// A broken file has a message, and a position where the breakage has one.
struct CheckReport {
    std::string file;
    bool ok = false;
    std::optional<std::uint64_t> line;
    std::optional<std::uint64_t> column;
    std::string message;
    std::vector<Duplicate> duplicates;
    Counts counts;
};

}  // namespace zupm::tool
