#include "tools/zupolicy/client/contents/Contents.h"

#include <filesystem>
#include <optional>
#include <utility>

#include "tools/zupolicy/client/Failure.h"
#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/DocumentReader.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"
#include "tools/zupolicy/client/contents/SourceText.h"

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

[[noreturn]] void ThrowChanged(const std::string& path)
{
    throw Failure(ExitCode::Changed, path + ": another program changed it while it was being read");
}

}  // namespace

FileContents ReadRecords(const std::string& path)
{
    const std::optional<std::string> text = DecodeSource(ReadBytes(path));
    std::optional<FileContents> contents = text ? ReadDocument(*text) : std::nullopt;
    if (!contents) {
        ThrowChanged(path);
    }
    return std::move(*contents);
}

FileContents ReadContents(const std::string& path)
{
    RequireName(path);
    const Stamp before = StampOf(path);
    FileVersions versions = LoadVersions(path);
    FileContents contents = ReadRecords(path);
    if (StampOf(path) != before) {
        ThrowChanged(path);
    }
    contents.policyVersion = std::move(versions.policy);
    contents.taskVersion = std::move(versions.task);
    contents.assignmentList = std::move(versions.assignmentList);
    return contents;
}

}  // namespace zupm::tool
