#include "client/Contents.h"

#include <filesystem>
#include <optional>
#include <utility>

#include "Failure.h"
#include "client/PolicyFile.h"
#include "file/LongPath.h"
#include "file/SourceText.h"
#include "text/Utf8.h"
#include "xml/DocumentReader.h"

namespace zupm::tool {
namespace {

namespace fs = std::filesystem;

/// What changes when a file is written.
struct Stamp {
    std::uintmax_t size = 0;
    fs::file_time_type time;

    friend bool operator==(const Stamp&, const Stamp&) = default;
};

Stamp StampOf(const std::string& path)
{
    const fs::path name = ForOpening(fs::path(FromUtf8(path)));
    std::error_code ignored;
    return {fs::file_size(name, ignored), fs::last_write_time(name, ignored)};
}

FileVersions LoadVersions(const std::string& path)
{
    return PolicyFile(path, Access::ReadOnly).Versions();
}

std::optional<FileContents> ReadRecords(const std::string& path)
{
    const std::optional<std::string> text = DecodeSource(ReadBytes(path));
    return text ? ReadDocument(*text) : std::nullopt;
}

}  // namespace

FileContents ReadContents(const std::string& path)
{
    RequireName(path);
    const Stamp before = StampOf(path);
    FileVersions versions = LoadVersions(path);
    std::optional<FileContents> contents = ReadRecords(path);
    if (!contents || StampOf(path) != before) {
        throw Failure(ExitCode::Changed, path + ": was changed by something else while it was read");
    }
    contents->policyVersion = std::move(versions.policy);
    contents->taskVersion = std::move(versions.task);
    contents->assignmentList = std::move(versions.assignmentList);
    return std::move(*contents);
}

}  // namespace zupm::tool
