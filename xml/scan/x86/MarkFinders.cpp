// x86-64: every such processor has SSE2, not every one has AVX2.
#include "xml/scan/MarkFinder.h"
#include "xml/scan/PlainMarks.h"
#include "xml/scan/x86/VectorMarks.h"

namespace AdvXMLParser {

namespace {

constexpr MarkFinder kFinders[] = {
    {"plain", FindMarksPlainly}, {"SSE2", FindMarksWithSse2}, {"AVX2", FindMarksWithAvx2}};

}  // namespace

Processor ThisProcessor() noexcept
{
    return {.hasAvx2 = __builtin_cpu_supports("avx2") != 0, .hasBmi = __builtin_cpu_supports("bmi") != 0};
}

std::span<const MarkFinder> MarkFindersFor(const Processor& processor) noexcept
{
    const std::span<const MarkFinder> all(kFinders);
    return processor.hasAvx2 && processor.hasBmi ? all : all.first(all.size() - 1);
}

}  // namespace AdvXMLParser
