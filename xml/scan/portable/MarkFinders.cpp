// Processors for which there is no other form than the plain one.
#include "xml/scan/MarkFinder.h"
#include "xml/scan/PlainMarks.h"

namespace AdvXMLParser {

namespace {

constexpr MarkFinder kFinders[] = {{"plain", FindMarksPlainly}};

}  // namespace

Processor ThisProcessor() noexcept
{
    return {};
}

std::span<const MarkFinder> MarkFindersFor(const Processor&) noexcept
{
    return kFinders;
}

}  // namespace AdvXMLParser
