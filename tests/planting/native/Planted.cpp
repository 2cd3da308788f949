// A library that leaves a trace when it is loaded as one.
#include <cstdio>
#include <cstdlib>

namespace {

[[gnu::constructor]] void Run()
{
    if (const char* const trace = std::getenv("ZUPM_TRACE"); trace != nullptr) {
        if (std::FILE* const file = std::fopen(trace, "w"); file != nullptr) {
            std::fclose(file);
        }
    }
}

}  // namespace
