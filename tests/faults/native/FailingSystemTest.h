/// A public operation that reads or writes files, whose every system call fails.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/faults/World.h"

namespace zupm::test {

/// What a failing system call led to.
struct Outcome {
    HRESULT code = S_OK;
    int error = 0;           ///< the error number of the failing calls
    bool forEver = false;    ///< all calls from the first failing one on
    std::string failedCall;  ///< the first of them; empty when the operation made fewer calls
};

struct FileOperation {
    const char* name;
    HRESULT (*run)(World& world);
    /// What must hold, after a failure and after a success.
    void (*check)(World& world, const Sight& before, const Outcome& outcome);
    void (*prepare)(World& world) = nullptr;
    /// The distance from one failing call to the next: 1, or a prime for an operation of many calls alike
    /// (FaultStride).
    int stride = 1;
    /// The number of errors that are tried; the seventh is ENOMEM.
    std::size_t errors = 6;
};

void PrintTo(const FileOperation& operation, std::ostream* out);

/// Runs operations with the first, the second, ... system call failing, until they pass.
class FailingSystem : public testing::TestWithParam<FileOperation> {
protected:
    /// Also for the operation without a failure, which must succeed.
    void FailEachCall(int error, bool forEver);

    TempFolder m_folder;

private:
    Outcome RunWith(int call, int error, bool forEver);
};

[[nodiscard]] std::string NameOf(const testing::TestParamInfo<FileOperation>& info);

// --- what operations share -------------------------------------------------------------------------------------------

/// A name in the world's folder, as the system takes it.
[[nodiscard]] std::string NativePath(const World& world, std::u16string_view name);

/// A failure has the error's own code, or says that reading or writing failed; and a sentence.
void ExpectCodeOfTheError(const Outcome& outcome);

/// Only an operation that cannot remove a file any more leaves its temporary.
void ExpectNoTemporary(const World& world, const Outcome& outcome);

/// Every entry is found as before, and the document has them; at most its versions were brought up to date.
void ExpectNothingLost(const World& world, const Sight& before);

}  // namespace zupm::test
