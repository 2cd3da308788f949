/// The commands of the tool. A new one is a source file of its own and a line in the table below.
#pragma once

#include <functional>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/report/Streams.h"

namespace CLI {
class App;
}

namespace zupm::tool {

/// Does what a command line asks for. Failures leave it as Failure.
using Action = std::function<ExitCode(Streams)>;

/// One command: what its help says, and what it takes and does.
struct Command {  // NOLINT(cppcoreguidelines-pro-type-member-init): the compiler asks for every field
    const char* name;
    const char* description;
    const char* examples;
    /// Declares the arguments and options. The parser stores them where the action keeps them; call the action after
    /// the parser has succeeded.
    Action (*declare)(CLI::App& line);
    /// Takes a value that may begin with a dash.
    bool takesAnyValue = false;
};

extern const Command kShow;
extern const Command kGet;
extern const Command kSet;
extern const Command kRemove;
extern const Command kExportIni;
extern const Command kCheck;
extern const Command kDoctor;
extern const Command kDiff;
extern const Command kQuery;
extern const Command kApply;
extern const Command kReport;
extern const Command kWatch;
extern const Command kExport;
extern const Command kImport;
extern const Command kRestore;

/// In the order in which the help lists them.
inline constexpr const Command* kCommands[] = {&kShow,   &kGet,    &kSet,    &kRemove,  &kExportIni,
                                               &kCheck,  &kDiff,   &kQuery,  &kWatch,   &kApply,
                                               &kReport, &kExport, &kImport, &kRestore, &kDoctor};

}  // namespace zupm::tool
