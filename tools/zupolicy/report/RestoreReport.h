/// What `restore` prints.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/zupolicy/client/Backup.h"
#include "tools/zupolicy/report/Streams.h"

namespace zupm::tool {

/// What became of the file.
struct RestoreResult {
    std::string file;
    bool isDryRun = false;
    bool changed = false;               ///< in a dry run: would change
    std::string restored;               ///< the backup that was put back
    std::optional<std::string> backup;  ///< the new one, of the file as it was
    std::optional<std::string> diff;    ///< when it is wanted
};

struct RestoreForm {
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;
};

/// "policy.xml: restored from policy.xml.bak, backup policy.xml.bak.1", or JSON.
void WriteRestore(Streams streams, const RestoreResult& result, RestoreForm form);

/// One line for each backup: time (UTC), size in bytes, name; or JSON.
void WriteBackups(std::ostream& out, const std::string& file, const std::vector<BackupFile>& backups, bool isJson);

}  // namespace zupm::tool
