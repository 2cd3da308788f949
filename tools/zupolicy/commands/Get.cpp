#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Json.h"

namespace zupm::tool {
namespace {

struct GetOptions {
    std::string file;
    Target target;
    std::string section;
    std::string name;
    bool json = false;
    bool quiet = false;
};

std::string ValueOf(const GetOptions& options)
{
    return PolicyFile(options.file, Access::ReadOnly).Find(options.target)->Get(options.section, options.name);
}

ExitCode RunGet(const GetOptions& options, Streams streams)
{
    if (options.quiet) {
        return Quietly([&] { static_cast<void>(ValueOf(options)); });
    }
    const Sought sought{options.file, options.target, options.section, options.name};
    const std::string value = Explaining(sought, [&] { return ValueOf(options); });
    if (options.json) {
        WriteValueAsJson(streams.data, options.target, options.section, options.name, value);
    } else {
        streams.data << value << '\n';
    }
    return ExitCode::Ok;
}

Action DeclareGet(CLI::App& line)
{
    const auto options = std::make_shared<GetOptions>();
    AddFile(line, options->file);
    AddTarget(line, options->target);
    line.add_option("SECTION", options->section, "The section")->required();
    line.add_option("NAME", options->name, "The setting")->required();
    AddJson(line, options->json);
    AddQuiet(line, options->quiet, "Print nothing; the exit code says whether the setting exists");
    return [options](Streams streams) { return RunGet(*options, streams); };
}

}  // namespace

constinit const Command kGet{
    .name = "get",
    .description = "Print the value of one setting",
    .examples =
        "  zupolicy get policy.xml PRODUCTA1000 General Enabled\n"
        "  zupolicy get policy.xml PRODUCTA1000 General Enabled --task '{task-1}'\n"
        "  zupolicy get policy.xml PRODUCTA1000 General Enabled --quiet && echo set",
    .declare = DeclareGet,
};

}  // namespace zupm::tool
