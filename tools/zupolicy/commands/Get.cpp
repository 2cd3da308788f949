#include <ostream>

#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Json.h"

namespace zupm::tool {

ExitCode RunCommand(const GetOptions& options, Streams streams)
{
    const Sought sought{options.file, options.target, options.section, options.name};
    const std::string value = Explaining(sought, [&] {
        PolicyFile file(options.file, Access::ReadOnly);
        return ToUtf8(file.Find(options.target)->Get(FromUtf8(options.section), FromUtf8(options.name)));
    });
    if (options.json) {
        WriteValueAsJson(streams.data, options.target, options.section, options.name, value);
    } else {
        streams.data << value << '\n';
    }
    return ExitCode::Ok;
}

}  // namespace zupm::tool
