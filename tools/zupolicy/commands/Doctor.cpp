#include <CLI/CLI.hpp>

#include <memory>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/DoctorReport.h"

namespace zupm::tool {
namespace {

ExitCode RunDoctor(bool json, Streams streams)
{
    const Diagnosis diagnosis = Diagnose();
    if (json) {
        WriteDiagnosisAsJson(streams.data, diagnosis);
    } else {
        PrintDiagnosis(streams.data, diagnosis);
    }
    return FirstFailure(diagnosis) == nullptr ? ExitCode::Ok : ExitCode::Other;
}

Action DeclareDoctor(CLI::App& line)
{
    const auto json = std::make_shared<bool>(false);
    AddJson(line, *json);
    return [json](Streams streams) { return RunDoctor(*json, streams); };
}

}  // namespace

constinit const Command kDoctor{
    .name = "doctor",
    .description =
        "Check the installation: the module that this tool uses, and the one that registered clients get; and say what "
        "to do about the first step that fails",
    .examples = "  zupolicy doctor --json",
    .declare = DeclareDoctor,
};

}  // namespace zupm::tool
