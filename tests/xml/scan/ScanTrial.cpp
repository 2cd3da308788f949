// The scanner beside the gate on a great many texts.
//
//   scan_trial FIRST COUNT [FOLDER...]
//
// Makes the texts of the numbers FIRST to FIRST + COUNT - 1 from the files below the folders and from documents of its
// own. The same numbers make the same texts, so a range can be continued by the next one. The exit code is 1 when the
// two do not agree on one of them; the text is written to standard error.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/xml/scan/GateAgreement.h"
#include "tests/xml/scan/Mutations.h"

namespace {

using AdvXMLParser::Agreement;
using AdvXMLParser::Mutations;

struct Counts {
    std::uint64_t executed = 0;
    std::uint64_t accepted = 0;
    std::uint64_t acceptedByGate = 0;
    std::uint64_t passedOnNeedlessly = 0;
};

void Print(const char* what, std::uint64_t number, const std::string& text)
{
    std::fprintf(stderr, "%s: number %llu\n", what, static_cast<unsigned long long>(number));
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fputc('\n', stderr);
}

bool Run(const Mutations& mutations, std::uint64_t number, Counts& counts)
{
    constexpr std::uint64_t kPrinted = 10;
    const std::string text = mutations.Text(number);
    const Agreement agreement = AdvXMLParser::CompareWithGate(text);
    ++counts.executed;
    counts.accepted += agreement.isAcceptedByScanner ? 1 : 0;
    counts.acceptedByGate += agreement.isAcceptedByGate ? 1 : 0;
    if (agreement.isPassedOnNeedlessly && ++counts.passedOnNeedlessly <= kPrinted) {
        Print("passed on needlessly", number, text);
    }
    if (!agreement.difference.empty()) {
        Print(agreement.difference.c_str(), number, text);
    }
    return agreement.difference.empty();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "scan_trial FIRST COUNT [FOLDER...]\n");
        return 2;
    }
    const std::uint64_t first = std::strtoull(argv[1], nullptr, 10);
    const std::uint64_t end = first + std::strtoull(argv[2], nullptr, 10);
    std::vector<std::string> seeds = AdvXMLParser::BuiltInSeeds();
    for (int folder = 3; folder < argc; ++folder) {
        const std::vector<std::string> more = AdvXMLParser::SeedsBelow(argv[folder]);
        seeds.insert(seeds.end(), more.begin(), more.end());
    }
    const std::size_t seedCount = seeds.size();
    const Mutations mutations(std::move(seeds));
    Counts counts;
    bool doAgree = true;
    for (std::uint64_t number = first; number < end && doAgree; ++number) {
        doAgree = Run(mutations, number, counts);
    }
    std::printf("%zu seeds; %llu executed, %llu accepted; the gate accepted %llu, of them %llu passed on needlessly\n",
                seedCount, static_cast<unsigned long long>(counts.executed),
                static_cast<unsigned long long>(counts.accepted),
                static_cast<unsigned long long>(counts.acceptedByGate),
                static_cast<unsigned long long>(counts.passedOnNeedlessly));
    return doAgree ? 0 : 1;
}
