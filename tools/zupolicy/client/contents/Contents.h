/// What a policy file holds, read through the component and then record by record.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/contents/FileContents.h"
#include "tools/zupolicy/client/contents/PlaceFinder.h"

namespace zupm::tool {

/// The contents of the file at a UTF-8 path; "-" is standard input. The component loads the file first and decides
/// whether it can be; its document is gone before the records are made, so both are never in memory together. Throws
/// ProblemFailure when the component refuses the file, and (Changed) when another program writes it at the same time.
[[nodiscard]] FileContents ReadContents(const std::string& path);

/// Contents with the text that their offsets are about.
struct PlacedContents {
    FileContents contents;
    std::string text;
};

/// As ReadContents; `whileLoaded` may look at the file before it is released.
[[nodiscard]] PlacedContents ReadPlaced(const std::string& path, const std::function<void(PolicyFile&)>& whileLoaded);

/// What a file has, each policy, task, section and setting once.
struct Counts {
    std::size_t policies = 0;
    std::size_t tasks = 0;
    std::size_t sections = 0;
    std::size_t settings = 0;
};

[[nodiscard]] Counts CountsOf(const FileContents& contents);

/// The counts of a file that the component has accepted and that `whileLoaded` may look at before it is released.
/// Throws as ReadContents does.
[[nodiscard]] Counts CountContents(const std::string& path, const std::function<void(PolicyFile&)>& whileLoaded);

}  // namespace zupm::tool
