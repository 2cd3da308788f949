#include "tools/zupolicy/report/RestoreReport.h"

#include <chrono>
#include <cstdint>
#include <iomanip>
#include <ostream>
#include <sstream>

#include "tools/zupolicy/report/Colour.h"
#include "tools/zupolicy/report/JsonWriter.h"
#include "tools/zupolicy/report/UnifiedDiff.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

/// 2024-05-06T07:08:09Z
std::string TimeText(std::filesystem::file_time_type time)
{
    using namespace std::chrono;
    const auto utc = floor<seconds>(file_clock::to_sys(time));
    const auto day = floor<days>(utc);
    const year_month_day date(day);
    const hh_mm_ss clock(utc - day);
    std::ostringstream text;
    text << std::setfill('0') << std::setw(4) << static_cast<int>(date.year()) << '-' << std::setw(2)
         << static_cast<unsigned>(date.month()) << '-' << std::setw(2) << static_cast<unsigned>(date.day()) << 'T'
         << std::setw(2) << clock.hours().count() << ':' << std::setw(2) << clock.minutes().count() << ':'
         << std::setw(2) << clock.seconds().count() << 'Z';
    return std::move(text).str();
}

void WriteAsJson(std::ostream& out, const RestoreResult& result)
{
    JsonWriter json(out);
    json.BeginDocument();
    json.Member("file", result.file);
    json.Key("dryRun").Boolean(result.isDryRun);
    json.Key("changed").Boolean(result.changed);
    json.Member("restored", result.restored);
    json.Key("backup").TextOrNull(result.backup);
    if (result.diff) {
        json.Member("diff", *result.diff);
    }
    json.EndObject();
}

void WriteAsText(std::ostream& out, const RestoreResult& result)
{
    WriteVisible(out, result.file, Backslash::Kept);
    out << (!result.changed ? ": unchanged, as " : result.isDryRun ? ": would be restored from " : ": restored from ");
    WriteVisible(out, result.restored, Backslash::Kept);
    if (result.backup) {
        out << ", backup ";
        WriteVisible(out, *result.backup, Backslash::Kept);
    }
    out << '\n';
}

}  // namespace

void WriteRestore(Streams streams, const RestoreResult& result, RestoreForm form)
{
    // The report for people says so anyway.
    if (form.isVerbose && form.isJson) {
        streams.messages.Line(result.file + (!result.changed   ? ": unchanged"
                                             : result.isDryRun ? ": would be changed"
                                                               : ": changed"));
    }
    if (form.isJson) {
        WriteAsJson(streams.data, result);
        return;
    }
    if (!form.isQuiet) {
        WriteAsText(streams.data, result);
    }
    if (result.diff) {
        WriteDiff(streams.data, *result.diff, HasColour(StandardStream::Output));
    }
}

void WriteBackups(std::ostream& out, const std::string& file, const std::vector<BackupFile>& backups, bool isJson)
{
    if (!isJson) {
        for (const BackupFile& backup : backups) {
            out << TimeText(backup.time) << "  " << backup.size << "  ";
            WriteVisible(out, backup.name, Backslash::Kept);
            out << '\n';
        }
        return;
    }
    JsonWriter json(out);
    json.BeginDocument();
    json.Member("file", file);
    json.Key("backups").BeginArray();
    for (const BackupFile& backup : backups) {
        json.BeginObject();
        json.Member("file", backup.name);
        json.Member("modified", TimeText(backup.time));
        json.Key("size").Number(static_cast<std::uint64_t>(backup.size));
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
}

}  // namespace zupm::tool
