#include "tools/zupolicy/commands/Version.h"

#include "tools/zupolicy/report/JsonWriter.h"

namespace zupm::tool {

std::string VersionOfProgram()
{
    return "zupolicy " ZUPM_VERSION
           "\n"
           "  target     " ZUPM_TARGET
           "\n"
           "  build      " ZUPM_BUILD
           "\n"
           "  JSON       schema " +
           std::to_string(JsonWriter::kSchema) +
           "\n"
           "  encodings  UTF-8, UTF-16 (little and big endian), ISO-8859-1\n";
}

}  // namespace zupm::tool
