#include "tools/zupolicy/report/RuleReport.h"

#include <string_view>
#include <utility>

#include "tools/zupolicy/client/contents/PlaceFinder.h"

namespace zupm::tool {

std::vector<RuleProblem> Placed(std::vector<rules::Violation> violations, std::string_view text)
{
    PlaceFinder finder(text);
    std::vector<RuleProblem> problems;
    for (rules::Violation& violation : violations) {
        const LineAndColumn place = finder.PlaceOf(violation.at);
        problems.push_back({std::move(violation), place.line, place.column});
    }
    return problems;
}

void PrintProblem(Messages& messages, const std::string& file, const RuleProblem& problem)
{
    messages.Line(file + ":" + std::to_string(problem.line) + ":" + std::to_string(problem.column) + ": " +
                  (problem.IsError() ? "" : "warning: ") + problem.violation.path + ": " + problem.violation.message);
}

void WriteProblem(JsonWriter& json, const RuleProblem& problem)
{
    json.BeginObject();
    json.Member("severity", problem.IsError() ? "error" : "warning");
    json.Key("line").Number(problem.line);
    json.Key("column").Number(problem.column);
    json.Member("path", problem.violation.path);
    json.Member("pointer", problem.violation.pointer);
    json.Member("message", problem.violation.message);
    json.EndObject();
}

}  // namespace zupm::tool
