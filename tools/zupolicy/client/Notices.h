/// What the component finds odd in a file.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "tools/zupolicy/client/Target.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {

/// One notice: the place in the file, and the sentence. Names in it may be anything.
struct Notice {
    std::uint64_t line = 0;
    std::uint64_t column = 0;
    std::string text;
};

/// The notices on one file, read one by one: a hostile file may have a million.
///
/// Lifetime  Does not need the file any more.
/// Errors    Every call that fails throws ProblemFailure, about the file given at construction.
class Notices {
public:
    Notices(ComPtr<IPolicyNotices> list, std::string file);

    [[nodiscard]] LONG Count() const noexcept { return m_count; }
    [[nodiscard]] Notice At(LONG index) const;
    /// Whether it is about a policy or task whose IDs occurred before. With `softwareId` only those of that product
    /// count, with `taskId` too only that task.
    [[nodiscard]] bool IsRepeatedEntry(const std::optional<std::string>& softwareId,
                                       const std::optional<std::string>& taskId, LONG index) const;
    /// Whether it is about a setting of that task that is lost in an INI file.
    [[nodiscard]] bool IsLossOf(const Target& task, LONG index) const;

private:
    [[nodiscard]] LONG KindOf(LONG index) const;
    [[nodiscard]] std::string SoftwareIdOf(LONG index) const;
    [[nodiscard]] std::string TaskIdOf(LONG index) const;

    ComPtr<IPolicyNotices> m_list;
    Subject m_subject;
    LONG m_count = 0;
};

}  // namespace zupm::tool
