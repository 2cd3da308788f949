#include "bench/TableReporter.h"

#include <algorithm>
#include <cstdio>

namespace zupm::bench {

namespace {

constexpr const char* kContenders[] = {"component", "libxml2", "pugixml"};

std::string Time(double seconds)
{
    char text[32];
    if (seconds >= 1e-3) {
        std::snprintf(text, sizeof text, "%.1f ms", seconds * 1e3);
    } else {
        std::snprintf(text, sizeof text, "%.2f us", seconds * 1e6);
    }
    return text;
}

std::string Cell(const std::map<std::string, double>& seconds, const std::string& contender)
{
    const auto found = seconds.find(contender);
    if (found == seconds.end()) {
        return "";
    }
    const auto component = seconds.find("component");
    if (contender == "component" || component == seconds.end()) {
        return Time(found->second);
    }
    char ratio[32];
    std::snprintf(ratio, sizeof ratio, " (%.2fx)", found->second / component->second);
    return Time(found->second) + ratio;
}

}  // namespace

bool TableReporter::ReportContext(const Context& context)
{
    return ConsoleReporter::ReportContext(context);
}

TableReporter::Row& TableReporter::RowOf(const std::string& operation)
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& row) { return row.operation == operation; });
    if (found != m_rows.end()) {
        return *found;
    }
    m_rows.push_back({operation, {}});
    return m_rows.back();
}

void TableReporter::ReportRuns(const std::vector<Run>& runs)
{
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        // "operation/contender" and, for parameters, what follows: "load/libxml2/16/1".
        const std::string& name = run.run_name.function_name;
        const std::size_t slash = name.find('/');
        std::string operation = name.substr(0, slash);
        if (operation == "load") {
            const std::string& size = run.run_name.args;
            operation += " " + size.substr(0, size.find('/')) + " MB " + (size.ends_with("/1") ? "UTF-16" : "UTF-8");
        }
        RowOf(operation).seconds[name.substr(slash + 1)] =
            run.real_accumulated_time / static_cast<double>(run.iterations);
    }
}

void TableReporter::Print() const
{
    std::printf("\n| operation | component | libxml2 | pugixml |\n|---|---|---|---|\n");
    for (const Row& row : m_rows) {
        std::printf("| %s |", row.operation.c_str());
        for (const char* contender : kContenders) {
            std::printf(" %s |", Cell(row.seconds, contender).c_str());
        }
        std::printf("\n");
    }
}

}  // namespace zupm::bench
