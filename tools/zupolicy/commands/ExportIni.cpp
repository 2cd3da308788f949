#include <filesystem>
#include <ostream>
#include <system_error>

#include "client/PolicyFile.h"
#include "commands/Commands.h"
#include "file/CopyFile.h"
#include "file/OrdinaryFile.h"
#include "file/TemporaryFolder.h"
#include "text/Utf8.h"

namespace zupm::tool {
namespace {

constexpr const char* kStandardOutput = "-";

void Export(PolicyFile& file, const ExportIniOptions& options, const std::filesystem::path& ini)
{
    try {
        file.FindTask(options.target)->WriteIni(ini.u16string());
    } catch (const CallError& error) {
        if (error.Result() == result::GeneralFailure) {
            throw Failure(ExitCode::FileError, options.iniFile + ": the INI file cannot be written");
        }
        throw;
    }
}

void ExportToFile(PolicyFile& file, const ExportIniOptions& options)
{
    // Windows looks for an INI file without a folder in its own folder, not in the current one.
    const std::filesystem::path ini = std::filesystem::absolute(std::filesystem::path(FromUtf8(options.iniFile)));
    if (!IsOrdinaryFile(ini)) {
        throw Failure(ExitCode::FileError, options.iniFile + ": not a regular file; `-` writes to the standard output");
    }
    Export(file, options, ini);
}

/// An export needs a file: each setting is put into what is there. So it goes by way of one.
void ExportToStream(PolicyFile& file, const ExportIniOptions& options, std::ostream& data)
{
    try {
        const TemporaryFolder folder;
        const std::filesystem::path ini = folder.Path() / "task.ini";
        Export(file, options, ini);
        CopyFile(ini, data);
    } catch (const std::system_error& error) {
        throw Failure(ExitCode::FileError, std::string("a temporary file cannot be used: ") + error.what());
    }
}

}  // namespace

ExitCode RunCommand(const ExportIniOptions& options, Streams streams)
{
    PolicyFile file(options.file, Access::ReadOnly);
    if (options.iniFile == kStandardOutput) {
        ExportToStream(file, options, streams.data);
    } else {
        ExportToFile(file, options);
    }
    return ExitCode::Ok;
}

}  // namespace zupm::tool
