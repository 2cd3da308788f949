#include "tools/zupolicy/client/contents/Contents.h"

#include <filesystem>
#include <optional>
#include <utility>

#include "tools/zupolicy/client/PolicyFile.h"
#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/client/contents/DocumentReader.h"
#include "tools/zupolicy/client/contents/SourceBytes.h"
#include "tools/zupolicy/client/contents/SourceText.h"
#include "tools/zupolicy/report/Problem.h"

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

[[noreturn]] void ThrowChanged(const std::string& path)
{
    throw Failure(ExitCode::Changed, path, "another program changed it while it was being read");
}

/// The records of a file that the component has accepted already.
PlacedContents ReadRecords(const std::string& path)
{
    std::optional<std::string> text = DecodeSource(ReadBytes(path));
    std::optional<FileContents> contents = text ? ReadDocument(*text) : std::nullopt;
    if (!contents) {
        ThrowChanged(path);
    }
    return {std::move(*contents), std::move(*text)};
}

/// Loads the file for `whileLoaded`, and then reads the records.
PlacedContents ReadTwice(const std::string& name, const std::function<void(PolicyFile&)>& whileLoaded)
{
    RequireName(name);
    return Reading(name, [&](const std::string& path) {
        const Stamp before = StampOf(path);
        {
            PolicyFile file(path, Access::ReadOnly);
            whileLoaded(file);
        }
        PlacedContents contents = ReadRecords(path);
        if (StampOf(path) != before) {
            ThrowChanged(path);
        }
        return contents;
    });
}

}  // namespace

PlacedContents ReadPlaced(const std::string& path, const std::function<void(PolicyFile&)>& whileLoaded)
{
    FileVersions versions;
    PlacedContents placed = ReadTwice(path, [&](PolicyFile& file) {
        versions = file.Versions();
        whileLoaded(file);
    });
    placed.contents.policyVersion = std::move(versions.policy);
    placed.contents.taskVersion = std::move(versions.task);
    placed.contents.assignmentList = std::move(versions.assignmentList);
    return placed;
}

FileContents ReadContents(const std::string& path)
{
    return ReadPlaced(path, [](PolicyFile&) {}).contents;
}

Counts CountsOf(const FileContents& contents)
{
    return {contents.policies.size(), contents.tasks.size(), contents.sections.size(), contents.settings.size()};
}

Counts CountContents(const std::string& path, const std::function<void(PolicyFile&)>& whileLoaded)
{
    return CountsOf(ReadTwice(path, whileLoaded).contents);
}

}  // namespace zupm::tool
