/// The commands of the tool, as the command line gives them; every text is UTF-8.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tools/zupolicy/client/Target.h"

namespace zupm::tool {

struct ShowOptions {
    std::string file;
    std::optional<std::string> softwareId;
    std::optional<std::string> taskId;
    bool namesOnly = false;
    bool json = false;
};

struct GetOptions {
    std::string file;
    Target target;
    std::string section;
    std::string name;
    bool json = false;
};

/// How long the commands that write wait for others to be done.
struct LockOptions {
    unsigned timeoutSeconds = 10;
};

/// Where the commands that edit leave their result.
struct EditOptions {
    std::optional<std::string> output;
    bool dryRun = false;
    bool force = false;
    bool json = false;
    LockOptions lock;

    /// A file of this name has another one as well: ./-
    [[nodiscard]] bool GoesToStandardOutput() const { return output == "-"; }
};

struct SetOptions {
    std::string file;
    Target target;
    std::string section;
    std::string name;
    std::string value;
    bool create = false;
    TaskFields fields;
    EditOptions edit;
};

/// Without a section the whole policy or task goes, without a name the whole section.
struct RemoveOptions {
    std::string file;
    Target target;
    std::optional<std::string> section;
    std::optional<std::string> name;
    EditOptions edit;
};

struct ExportIniOptions {
    std::string file;
    Target target;
    std::string iniFile;
};

struct CheckOptions {
    std::vector<std::string> files;
    bool verbose = false;
    bool strict = false;
    bool json = false;
};

using Command = std::variant<ShowOptions, GetOptions, SetOptions, RemoveOptions, ExportIniOptions, CheckOptions>;

}  // namespace zupm::tool
