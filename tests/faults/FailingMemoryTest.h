/// A public operation whose every allocation fails.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/faults/World.h"

namespace zupm::test {

/// One operation on one state of the objects.
struct Operation {
    const char* name;
    /// The operation and nothing else: it allocates nothing of its own.
    HRESULT (*run)(World& world);
    /// Every code that a failure gives; each must be returned at least once, and no other.
    std::vector<HRESULT> codes;
    /// What must hold after a failure, and after a success: also one that an allocation failed on the way to.
    void (*afterFailure)(World& world, const Sight& before);
    void (*afterSuccess)(World& world);
    /// Brings the objects into the state that the operation starts from; null: a World as it is.
    void (*prepare)(World& world) = nullptr;
    /// Run again after a failure, when memory is back, the operation succeeds as if nothing had failed. An edit that
    /// emptied its index first needs the file loaded again.
    void (*recover)(World& world) = nullptr;
    /// Members of the interfaces leave error information about this call or none; calls that make objects or find
    /// members leave the old information alone.
    bool isMember = true;
    /// Fewer failures than this mean that the operation did not get far.
    int fewestFailures = 1;
    /// The distance from one failing allocation to the next: 1, or a prime for an operation of thousands (FaultStride).
    int stride = 1;
};

void PrintTo(const Operation& operation, std::ostream* out);

/// Runs operations with the first, the second, ... allocation failing, once and for ever from there on, until they
/// pass.
class FailingMemory : public testing::TestWithParam<Operation> {
protected:
    void FailEachAllocation(bool forEver);
    void ExpectEveryCode() const;

private:
    /// Runs the operation once; false when no allocation failed.
    bool RunWith(int number, bool forEver);
    void NoteCode(HRESULT code);

    TempFolder m_folder;
    std::vector<bool> m_isSeen = std::vector<bool>(GetParam().codes.size());  ///< of the row's codes
};

/// Test names: the operation's.
[[nodiscard]] std::string NameOf(const testing::TestParamInfo<Operation>& info);

/// What most operations leave after a failure: objects and files as before.
void EverythingIsAsBefore(World& world, const Sight& before);

}  // namespace zupm::test
