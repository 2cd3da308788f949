#include "tools/zupolicy/report/WatchReport.h"

#include <chrono>
#include <ctime>
#include <sstream>
#include <string_view>
#include <utility>

#include "tools/zupolicy/model/CompareSides.h"
#include "tools/zupolicy/report/ChangeReport.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

/// "2026-05-04T03:02:01Z".
std::string Now()
{
    using namespace std::chrono;
    const auto now = floor<seconds>(system_clock::now());
    const auto today = floor<days>(now);
    const year_month_day date(today);
    const hh_mm_ss time(now - today);
    const auto pair = [](auto number) {
        const std::string text = std::to_string(number);
        return text.size() < 2 ? "0" + text : text;
    };
    return std::to_string(static_cast<int>(date.year())) + "-" + pair(static_cast<unsigned>(date.month())) + "-" +
           pair(static_cast<unsigned>(date.day())) + "T" + pair(time.hours().count()) + ":" +
           pair(time.minutes().count()) + ":" + pair(time.seconds().count()) + "Z";
}

void WriteHead(JsonWriter& json, const std::string& file)
{
    json.Member("time", Now());
    json.Member("file", file);
}

}  // namespace

WatchReport::WatchReport(Streams streams, bool isJson, Redaction redaction, std::optional<std::uint64_t> most)
    : m_streams(streams), m_isJson(isJson), m_redaction(std::move(redaction)), m_most(most)
{
}

void WatchReport::WriteLines(const std::string& lines)
{
    for (std::size_t begin = 0; begin < lines.size() && !IsOver();) {
        const std::size_t end = lines.find('\n', begin) + 1;
        m_streams.data << std::string_view(lines).substr(begin, end - begin) << std::flush;
        ++m_changes;
        begin = end;
    }
}

void WatchReport::Changed(const std::string& file, const model::FileState& before, const model::FileState& after)
{
    ChangeStyle style;
    style.redaction = m_redaction;
    std::ostringstream prefix;
    WriteVisible(prefix, file, Backslash::Kept);
    style.linePrefix = prefix.str() + ": ";
    style.writeMembers = [&](JsonWriter& json) { WriteHead(json, file); };
    std::ostringstream lines;
    JsonWriter json(lines, JsonWriter::Form::OneLine);
    const auto write = [&](const auto& difference,
                           void (*asJson)(JsonWriter&, decltype(difference), const ChangeStyle&),
                           void (*asText)(std::ostream&, decltype(difference), const ChangeStyle&)) {
        if (m_isJson) {
            asJson(json, difference, style);
        } else {
            asText(lines, difference, style);
        }
    };
    if (before.assignmentList != after.assignmentList) {
        write(FileDifference{"assignmentList", before.assignmentList, after.assignmentList}, WriteAsEdit, WriteAsText);
    }
    CompareSides(before, after, [&](const model::EntryChange& change) { write(change, WriteAsEdits, WriteAsText); });
    WriteLines(lines.str());
}

void WatchReport::Broken(const std::string& file, const Problem& problem)
{
    m_streams.messages.Line(LineOf(problem));
    if (m_isJson) {
        JsonWriter json(m_streams.data, JsonWriter::Form::OneLine);
        json.BeginDocument();
        WriteHead(json, file);
        WriteProblem(json, problem);
        json.EndObject();
        m_streams.data << std::flush;
    }
}

void WatchReport::Sound(const std::string& file)
{
    m_streams.messages.Line(file + ": can be read again");
    if (m_isJson) {
        JsonWriter json(m_streams.data, JsonWriter::Form::OneLine);
        json.BeginDocument();
        WriteHead(json, file);
        json.Key("error").Null();
        json.EndObject();
        m_streams.data << std::flush;
    }
}

}  // namespace zupm::tool
