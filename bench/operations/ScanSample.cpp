// A measured process that has the document library alone: reads a file, and scans it into records with one form of the
// scanner. Without arguments it prints the forms that this processor can run.
//
//   bench_scan_sample [FORM FILE WARM COUNTED]
#include <cstdio>
#include <cstdlib>

#include "bench/PlainFiles.h"
#include "bench/operations/Operation.h"
#include "platform/Files.h"
#include "text/Utf.h"
#include "xml/RecordBuilder.h"
#include "xml/scan/Scanner.h"

namespace {

using namespace zupm::bench;

/// Null when this processor cannot run the form.
const AdvXMLParser::MarkFinder* FormOf(std::string_view name)
{
    for (const AdvXMLParser::MarkFinder& finder : AdvXMLParser::MarkFindersFor(AdvXMLParser::ThisProcessor())) {
        if (finder.name == name) {
            return &finder;
        }
    }
    return nullptr;
}

void PrintForms()
{
    for (const AdvXMLParser::MarkFinder& finder : AdvXMLParser::MarkFindersFor(AdvXMLParser::ThisProcessor())) {
        std::printf("%.*s\n", static_cast<int>(finder.name.size()), finder.name.data());
    }
}

void ReadAndScan(const std::u16string& path, const AdvXMLParser::MarkFinder& form)
{
    std::string text;
    Demand(zupm::ReadWholeFile(path, text) >= 0, "reading the file");
    AdvXMLParser::RecordBuilder builder(static_cast<std::uint32_t>(text.size()));
    Demand(AdvXMLParser::ScanDocument(text, builder, {.finder = &form}).has_value(), "scanning the file");
    Use(builder.Finish());
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 1) {
        PrintForms();
        return 0;
    }
    Demand(argc == 5, "bench_scan_sample: reading the command line");
    const AdvXMLParser::MarkFinder* const form = FormOf(argv[1]);
    Demand(form != nullptr, "bench_scan_sample: finding the form");
    KeepTheHeap();
    const std::u16string path = zupm::ToUtf16(argv[2]).value();
    PrintSamples({[&] { ReadAndScan(path, *form); }}, std::atoi(argv[3]), std::atoi(argv[4]));
    return 0;
}
