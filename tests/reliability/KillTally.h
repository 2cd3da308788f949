/// What killed writers left, counted.
#pragma once

#include <array>
#include <cstddef>
#include <ostream>

namespace zupm::test {

/// Where a victim was when it died, as its folder shows.
enum class KillStage {
    BetweenCalls,       ///< not inside WriteFile
    BeforeTemporary,    ///< the old file alone: the document was being put together
    WritingTemporary,   ///< beside the old file there is a part of the new one
    TemporaryComplete,  ///< all bytes are there and being flushed, or about to be renamed
    Replaced,           ///< the new file is in place, but the call has not returned
};

/// How many victims died at which stage.
class KillTally {
public:
    void Count(KillStage stage) { ++m_counts[static_cast<std::size_t>(stage)]; }

    [[nodiscard]] int At(KillStage stage) const { return m_counts[static_cast<std::size_t>(stage)]; }
    /// Those that died inside WriteFile.
    [[nodiscard]] int Inside() const;
    /// Those that left a temporary file.
    [[nodiscard]] int Temporaries() const;

    friend std::ostream& operator<<(std::ostream& out, const KillTally& tally);

private:
    std::array<int, 5> m_counts{};
};

}  // namespace zupm::test
