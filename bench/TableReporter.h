/// The results as one table: an operation a row, a contender a column, with ratios.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace zupm::bench {

/// Collects the runs while the console shows them; Print gives the table.
class TableReporter : public benchmark::ConsoleReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Markdown on standard output. A ratio above 1 says how many times faster the component is.
    void Print() const;

private:
    struct Row {
        std::string operation;
        std::map<std::string, double> seconds;  ///< by contender
    };
    Row& RowOf(const std::string& operation);

    std::vector<Row> m_rows;
};

}  // namespace zupm::bench
