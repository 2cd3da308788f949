#include "tools/zupolicy/report/DoctorReport.h"

#include <iomanip>
#include <ostream>

#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

constexpr int kStepWidth = 17;
constexpr int kOutcomeWidth = 8;

const char* NameOf(Outcome outcome)
{
    switch (outcome) {
        case Outcome::Ok:
            return "ok";
        case Outcome::Note:
            return "note";
        case Outcome::Failed:
            break;
    }
    return "FAILED";
}

void PrintFinding(std::ostream& out, const Finding& finding)
{
    out << "  " << std::left << std::setw(kStepWidth) << finding.step;
    if (finding.text.empty()) {
        out << NameOf(finding.outcome) << "\n";
        return;
    }
    out << std::setw(kOutcomeWidth) << NameOf(finding.outcome);
    WriteVisible(out, finding.text, Backslash::Kept);
    out << "\n";
}

void WriteModule(JsonWriter& json, const ModuleDiagnosis& module)
{
    json.BeginObject();
    json.Member("usedBy", module.user);
    json.Key("steps").BeginArray();
    for (const Finding& finding : module.findings) {
        json.BeginObject();
        json.Member("step", finding.step);
        json.Member("outcome", finding.outcome == Outcome::Failed ? "failed" : NameOf(finding.outcome));
        json.Member("text", finding.text);
        if (finding.outcome == Outcome::Failed) {
            json.Member("advice", finding.advice);
        }
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
}

}  // namespace

void PrintDiagnosis(std::ostream& out, const Diagnosis& diagnosis)
{
    for (const ModuleDiagnosis& module : diagnosis.modules) {
        out << module.title << "\n";
        for (const Finding& finding : module.findings) {
            PrintFinding(out, finding);
        }
        out << "\n";
    }
    const Finding* const failure = FirstFailure(diagnosis);
    if (failure == nullptr) {
        out << "Nothing is wrong.\n";
        return;
    }
    out << "What to do: ";
    WriteVisible(out, failure->advice, Backslash::Kept);
    out << "\n";
}

void WriteDiagnosisAsJson(std::ostream& out, const Diagnosis& diagnosis)
{
    JsonWriter json(out);
    json.BeginDocument();
    json.Key("ok").Boolean(FirstFailure(diagnosis) == nullptr);
    json.Key("modules").BeginArray();
    for (const ModuleDiagnosis& module : diagnosis.modules) {
        WriteModule(json, module);
    }
    json.EndArray();
    json.EndObject();
}

}  // namespace zupm::tool
