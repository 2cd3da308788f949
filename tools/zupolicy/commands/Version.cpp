#include "tools/zupolicy/commands/Version.h"

#include <sstream>

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

std::string VersionAsJson()
{
    std::ostringstream out;
    JsonWriter json(out);
    json.BeginDocument();
    json.Member("version", ZUPM_VERSION);
    json.Member("target", ZUPM_TARGET);
    json.Member("build", ZUPM_BUILD);
    json.Key("encodings").BeginArray();
    for (const char* encoding : {"UTF-8", "UTF-16LE", "UTF-16BE", "ISO-8859-1"}) {
        json.Text(encoding);
    }
    json.EndArray();
    json.EndObject();
    return out.str();
}

}  // namespace zupm::tool
