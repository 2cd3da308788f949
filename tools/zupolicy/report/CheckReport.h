/// What `check` found out about one file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/zupolicy/client/contents/FileContents.h"

namespace zupm::tool {

/// A sound file has contents; a broken one has a message, and a position where the breakage has one.
struct CheckReport {
    std::string file;
    std::optional<FileContents> contents;
    std::optional<std::uint64_t> line;
    std::optional<std::uint64_t> column;
    std::string message;
};

}  // namespace zupm::tool
