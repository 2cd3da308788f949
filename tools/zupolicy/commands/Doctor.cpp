#include <CLI/CLI.hpp>

#include <memory>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/DoctorReport.h"

namespace zupm::tool {
namespace {

struct DoctorOptions {
    bool json = false;
    bool quiet = false;
};

ExitCode RunDoctor(const DoctorOptions& options, Streams streams)
{
    const Diagnosis diagnosis = Diagnose();
    if (options.json) {
        WriteDiagnosisAsJson(streams.data, diagnosis);
    } else if (!options.quiet) {
        PrintDiagnosis(streams.data, diagnosis);
    }
    return FirstFailure(diagnosis) == nullptr ? ExitCode::Ok : ExitCode::Other;
}

Action DeclareDoctor(CLI::App& line)
{
    const auto options = std::make_shared<DoctorOptions>();
    AddJson(line, options->json);
    AddQuiet(line, options->quiet, "Print nothing; the exit code says whether something is wrong");
    return [options](Streams streams) { return RunDoctor(*options, streams); };
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
