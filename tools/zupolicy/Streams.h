/// Where the tool writes.
#pragma once

#include <iosfwd>

namespace zupm::tool {

/// The two streams of a run: what was asked for, and what is said about it.
struct Streams {
    std::ostream& data;
    std::ostream& messages;
};

}  // namespace zupm::tool
