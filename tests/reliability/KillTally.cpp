#include "KillTally.h"

namespace zupm::test {

int KillTally::Inside() const
{
    return At(KillStage::BeforeTemporary) + At(KillStage::Replaced) + Temporaries();
}

int KillTally::Temporaries() const
{
    return At(KillStage::WritingTemporary) + At(KillStage::TemporaryComplete);
}

std::ostream& operator<<(std::ostream& out, const KillTally& tally)
{
    return out << tally.Inside() << " kills inside WriteFile (and " << tally.At(KillStage::BetweenCalls)
               << " between calls): before the temporary file " << tally.At(KillStage::BeforeTemporary)
               << ", while it was written " << tally.At(KillStage::WritingTemporary) << ", complete but not in place "
               << tally.At(KillStage::TemporaryComplete) << ", in place before the call returned "
               << tally.At(KillStage::Replaced) << "; temporary files left: " << tally.Temporaries();
}

}  // namespace zupm::test
