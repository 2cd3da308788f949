/// What `report --json` prints about the page that it has written.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "tools/zupolicy/report/PageData.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {

/// The sums of the files of a page.
class PageReport {
public:
    explicit PageReport(std::string written) : m_written(std::move(written)) {}

    void Add(const PageFile& file);
    /// Of the files that could not be read.
    [[nodiscard]] const std::vector<Problem>& Failures() const noexcept { return m_failures; }

    void WriteAsJson(std::ostream& out) const;

private:
    std::string m_written;
    std::size_t m_files = 0;
    std::size_t m_policies = 0;
    std::size_t m_tasks = 0;
    std::size_t m_problems = 0;
    std::vector<Problem> m_failures;
};

}  // namespace zupm::tool
