/// What a fuzzer demands of the code under test.
#pragma once

#include <string_view>

namespace zupm::fuzz {

/// Reports which promise was broken and ends the process, so that the fuzzing engine keeps the input.
[[noreturn]] void ReportBroken(std::string_view promise, std::string_view detail);

/// `detail` is what a reader of the report needs to see why.
inline void Demand(bool isKept, std::string_view promise, std::string_view detail = {})
{
    if (!isKept) {
        ReportBroken(promise, detail);
    }
}

}  // namespace zupm::fuzz
