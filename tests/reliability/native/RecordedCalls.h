/// The system calls of an operation, recorded while it runs, and what a loss of power would leave of them.
#pragma once

#include <string>
#include <vector>

#include "DiskModel.h"

namespace zupm::test {

/// Records the calls that go through native::Calls, from its construction to its destruction. One at a time, for one
/// thread.
class RecordedCalls {
public:
    /// Everything in `folder` and below counts as flushed.
    explicit RecordedCalls(const std::string& folder);
    ~RecordedCalls();
    RecordedCalls(const RecordedCalls&) = delete;
    RecordedCalls& operator=(const RecordedCalls&) = delete;

    [[nodiscard]] static const std::vector<DiskCall>& Calls();

    /// What may be found at `path` below the folder when the power fails after no call, one call, ... all calls.
    [[nodiscard]] std::vector<FoundStates> Losses(const std::vector<std::string>& path) const;

private:
    DiskModel m_before;
    DiskNode m_folder;
};

}  // namespace zupm::test
