// The scanner's stages, from memory to memory, beside the gate and pugixml. Prints the best processor time of each in
// milliseconds; the contenders take turns, so that a busy machine is busy for all of them.
//
//   scan_bench [FILE [ROUNDS]]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <limits>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "bench/driver/SampleFiles.h"
#include "platform/Files.h"
#include "text/Utf.h"
#include "xml/ExpatGate.h"
#include "xml/RecordBuilder.h"
#include "xml/scan/MarkReader.h"
#include "xml/scan/Scanner.h"

namespace {

using namespace AdvXMLParser;

constexpr std::size_t kBytes = 16'000'000;
constexpr std::uint32_t kProductLevels = 5;

double Milliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

void Demand(bool isDone, const std::string& step)
{
    if (!isDone) {
        std::fprintf(stderr, "%s failed\n", step.c_str());
        std::exit(1);
    }
}

struct Contender {
    std::string name;
    std::function<bool()> run;
    /// What comes before each run and is not measured.
    std::function<void()> prepare = [] {};
    double best = std::numeric_limits<double>::max();
};

class Nothing final : public TagSink {
public:
    void Take(std::span<const Tag>) override {}
};

bool ReadMarks(const std::string& text, const MarkFinder& finder)
{
    MarkReader marks(text, 0, finder, ScanOptions().pieceBytes);
    marks.SkipTo(static_cast<std::uint32_t>(text.size()));
    return marks.IsValid();
}

bool ScanOnly(const std::string& text, const MarkFinder& finder)
{
    Nothing nothing;
    return ScanDocument(text, nothing, {.reportedLevels = 0, .finder = &finder}).has_value();
}

bool ScanLevels(const std::string& text, const MarkFinder& finder, std::uint32_t levels)
{
    RecordBuilder builder(static_cast<std::uint32_t>(text.size()));
    const bool isAccepted = ScanDocument(text, builder, {.reportedLevels = levels, .finder = &finder}).has_value();
    const RecordStore records = builder.Finish();
    return isAccepted;
}

std::vector<Contender> ContendersFor(const std::string& text, std::string& copy)
{
    std::vector<Contender> contenders;
    const auto toCopy = [&] { copy = text; };
    contenders.push_back(
        {"memcpy", [&] { return std::memcpy(copy.data(), text.data(), text.size()) != nullptr; }, toCopy});
    contenders.push_back({"FindInvalidUtf8", [&] { return zupm::FindInvalidUtf8(text) == zupm::kValid; }});
    for (const MarkFinder& finder : MarkFindersFor(ThisProcessor())) {
        const std::string form(finder.name);
        contenders.push_back({form + ", marks", [&] { return ReadMarks(text, finder); }});
        contenders.push_back({form + ", scan without records", [&] { return ScanOnly(text, finder); }});
        contenders.push_back({form + ", 5 levels", [&] { return ScanLevels(text, finder, kProductLevels); }});
        contenders.push_back(
            {form + ", all records", [&] { return ScanLevels(text, finder, ScanOptions().reportedLevels); }});
    }
    contenders.push_back({"pugixml in place, default",
                          [&] {
                              pugi::xml_document document;
                              return static_cast<bool>(document.load_buffer_inplace(copy.data(), copy.size()));
                          },
                          toCopy});
    contenders.push_back({"pugixml in place, full",
                          [&] {
                              pugi::xml_document document;
                              return static_cast<bool>(
                                  document.load_buffer_inplace(copy.data(), copy.size(), pugi::parse_full));
                          },
                          toCopy});
    contenders.push_back({"the gate", [&] {
                              (void)ExpatGate(text, std::nullopt).ReadRest();
                              return true;
                          }});
    return contenders;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string path = argc > 1 ? std::string(argv[1]) : zupm::bench::FileOfSize(kBytes).path;
    std::string text;
    Demand(zupm::ReadWholeFile(zupm::ToUtf16(path).value(), text) >= 0, "reading " + path);
    std::string copy = text;
    std::vector<Contender> contenders = ContendersFor(text, copy);
    for (int round = argc > 2 ? std::atoi(argv[2]) : 15; round > 0; --round) {
        for (Contender& contender : contenders) {
            contender.prepare();
            const double begin = Milliseconds();
            Demand(contender.run(), contender.name);
            contender.best = std::min(contender.best, Milliseconds() - begin);
        }
    }
    for (const Contender& contender : contenders) {
        std::printf("%-32s %8.2f ms  %6.2f GB/s\n", contender.name.c_str(), contender.best,
                    static_cast<double>(text.size()) / contender.best / 1e6);
    }
    return 0;
}
