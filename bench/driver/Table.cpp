#include "bench/driver/Table.h"

#include <cstdio>

#include "bench/PlainFiles.h"

namespace zupm::bench {

namespace {

using Value = double (*)(const Result& result);
using Format = std::string (*)(double value, double fileBytes);

std::string Formatted(double value, int decimals, const char* unit)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f%s", decimals, value, unit);
    return text;
}

std::string Time(double seconds, double /*fileBytes*/)
{
    if (seconds >= 0.1) {
        return Formatted(seconds * 1e3, 0, " ms");
    }
    return seconds >= 1e-3 ? Formatted(seconds * 1e3, 2, " ms") : Formatted(seconds * 1e6, 2, " us");
}

std::string Memory(double bytes, double fileBytes)
{
    return Formatted(bytes / 1e6, 1, " MB") + " (" + Formatted(bytes / fileBytes, 2, "x the file)");
}

std::string Size(double bytes)
{
    return bytes >= 1e6 ? Formatted(bytes / 1e6, 1, " MB") : Formatted(bytes / 1e3, 0, " KB");
}

void PrintLines(const std::string& operation, const Contest& contest, const std::vector<Result>& results, Value value,
                Format format)
{
    const auto fileBytes = static_cast<double>(SizeOf(contest.file));
    const double ours = value(results.front());
    const std::string begin = "| " + operation + " | " + Size(fileBytes) + " | " + format(ours, fileBytes) + " | ";
    if (results.size() == 1) {
        std::printf("%s| | |\n", begin.c_str());
    }
    for (std::size_t i = 1; i < results.size(); ++i) {
        const double theirs = value(results[i]);
        std::printf("%s%s | %s | %.2fx |\n", begin.c_str(), results[i].contender.c_str(),
                    format(theirs, fileBytes).c_str(), theirs / ours);
    }
    std::fflush(stdout);
}

}  // namespace

void PrintTableHead()
{
    std::printf("| operation | file | component | peer | peer's | ratio |\n|---|---|---|---|---|---|\n");
}

void PrintRow(const std::string& operation, const Contest& contest, const std::vector<Result>& results)
{
    PrintLines(
        operation, contest, results, [](const Result& result) { return result.seconds; }, Time);
    if (contest.isPeakShown) {
        PrintLines(
            operation + ": peak memory", contest, results, [](const Result& result) { return result.peakBytes; },
            Memory);
    }
}

}  // namespace zupm::bench
