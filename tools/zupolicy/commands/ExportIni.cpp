#include <filesystem>

#include "client/PolicyFile.h"
#include "commands/Commands.h"
#include "text/Utf8.h"

namespace zupm::tool {

ExitCode RunCommand(const ExportIniOptions& options, Streams)
{
    PolicyFile file(options.file, Access::ReadOnly);
    // Windows looks for an INI file without a folder in its own folder, not in the current one.
    const std::filesystem::path ini = std::filesystem::absolute(std::filesystem::path(FromUtf8(options.iniFile)));
    try {
        file.FindTask(options.target)->WriteIni(ini.u16string());
    } catch (const CallError& error) {
        if (error.Result() == result::GeneralFailure) {
            throw Failure(ExitCode::FileError, options.iniFile + ": the INI file cannot be written");
        }
        throw;
    }
    return ExitCode::Ok;
}

}  // namespace zupm::tool
