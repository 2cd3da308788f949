#include "tools/zupolicy/report/ApplyReport.h"

#include <ostream>
#include <string_view>

#include "tools/zupolicy/report/Excerpt.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

using State = ApplyResult::State;

std::string_view NameOf(State state)
{
    switch (state) {
        case State::Changed:
            return "changed";
        case State::Unchanged:
            return "unchanged";
        case State::Failed:
            return "failed";
        case State::NotDone:
            break;
    }
    return "not done";
}

}  // namespace

ApplyReport::ApplyReport(Streams streams, bool isJson, bool isDryRun)
    : m_streams(streams), m_isJson(isJson), m_isDryRun(isDryRun), m_json(streams.data)
{
    if (m_isJson) {
        m_json.BeginDocument();
        m_json.Key("dryRun").Boolean(m_isDryRun);
        m_json.Key("files").BeginArray();
    }
}

void ApplyReport::Add(const ApplyResult& result)
{
    m_changed += result.state == State::Changed ? 1 : 0;
    m_unchanged += result.state == State::Unchanged ? 1 : 0;
    m_failed += result.state == State::Failed ? 1 : 0;
    m_notDone += result.state == State::NotDone ? 1 : 0;
    if (result.problem) {
        m_streams.messages.Line(LineOf(*result.problem));
        PrintExcerpt(m_streams.messages, *result.problem);
        m_code = m_code == ExitCode::Ok || m_code == ExitCode::Written ? result.problem->exit : m_code;
    }
    if (m_isJson) {
        AddJson(result);
    } else {
        AddText(result);
    }
    // Whoever ends the process now knows from the output which files are done.
    m_streams.data.flush();
}

void ApplyReport::End()
{
    if (m_isJson) {
        EndJson();
    } else {
        m_streams.data << m_changed << (m_isDryRun ? " would change, " : " changed, ") << m_unchanged << " unchanged, "
                       << m_failed << " failed, " << m_notDone << " not done\n";
    }
}

void ApplyReport::AddText(const ApplyResult& result)
{
    if (result.state == State::Failed) {
        return;  // the problem is its line
    }
    WriteVisible(m_streams.data, result.file, Backslash::Kept);
    m_streams.data << ": " << (m_isDryRun && result.state == State::Changed ? "would be " : "") << NameOf(result.state);
    if (result.state == State::Changed) {
        m_streams.data << " (" << result.edits << (result.edits == 1 ? " edit" : " edits") << ')';
    }
    if (result.backup) {
        m_streams.data << ", backup ";
        WriteVisible(m_streams.data, *result.backup, Backslash::Kept);
    }
    m_streams.data << '\n' << result.differences;
}

void ApplyReport::AddJson(const ApplyResult& result)
{
    m_json.BeginObject();
    m_json.Member("file", result.file);
    m_json.Member("result", NameOf(result.state));
    m_json.Key("edits").Number(result.edits);
    m_json.Key("backup").TextOrNull(result.backup);
    if (result.problem) {
        WriteProblem(m_json, *result.problem);
    }
    m_json.EndObject();
}

void ApplyReport::EndJson()
{
    m_json.EndArray();
    m_json.Key("summary").BeginObject();
    m_json.Key("changed").Number(m_changed);
    m_json.Key("unchanged").Number(m_unchanged);
    m_json.Key("failed").Number(m_failed);
    m_json.Key("notDone").Number(m_notDone);
    m_json.EndObject();
    m_json.EndObject();
}

}  // namespace zupm::tool
