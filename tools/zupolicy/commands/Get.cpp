#include <ostream>

#include "client/PolicyFile.h"
#include "commands/Commands.h"
#include "output/Json.h"
#include "text/Utf8.h"

namespace zupm::tool {

ExitCode RunCommand(const GetOptions& options, Streams streams)
{
    PolicyFile file(options.file, Access::ReadOnly);
    const std::string value = ToUtf8(file.Find(options.target)->Get(FromUtf8(options.section), FromUtf8(options.name)));
    if (options.json) {
        streams.data << ValueAsJson(options.target, options.section, {options.name, value});
    } else {
        streams.data << value << '\n';
    }
    return ExitCode::Ok;
}

}  // namespace zupm::tool
