#include "xml/TextSnapshot.h"

#include <cstddef>
#include <functional>
#include <utility>

namespace AdvXMLParser {

namespace {

bool LiesIn(std::string_view run, std::string_view text) noexcept
{
    constexpr std::less_equal<> kIsNotAfter;
    return kIsNotAfter(text.data(), run.data()) && kIsNotAfter(run.data() + run.size(), text.data() + text.size());
}

}  // namespace

TextSnapshot::TextSnapshot(TextRuns runs, std::string_view parsed) : m_runs(std::move(runs))
{
    std::size_t size = 0;
    for (const std::string_view run : m_runs) {
        size += LiesIn(run, parsed) ? 0 : run.size();
    }
    m_copied.reserve(size);
    for (std::string_view& run : m_runs) {
        if (!LiesIn(run, parsed)) {
            const std::size_t at = m_copied.size();
            m_copied.insert(m_copied.end(), run.begin(), run.end());
            run = std::string_view(m_copied.data() + at, run.size());
        }
    }
}

}  // namespace AdvXMLParser
