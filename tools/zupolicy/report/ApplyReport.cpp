#include "tools/zupolicy/report/ApplyReport.h"

#include <ostream>
#include <string_view>

#include "tools/zupolicy/report/Excerpt.h"
#include "tools/zupolicy/report/UnifiedDiff.h"
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

ApplyReport::ApplyReport(Streams streams, ApplyForm form) : m_streams(streams), m_form(form), m_json(streams.data)
{
    if (m_form.isJson) {
        m_json.BeginDocument();
        m_json.Key("dryRun").Boolean(m_form.isDryRun);
        m_json.Key("files").BeginArray();
    }
}

void ApplyReport::Add(const ApplyResult& result)
{
    m_changed += result.state == State::Changed ? 1 : 0;
    m_unchanged += result.state == State::Unchanged ? 1 : 0;
    m_failed += result.state == State::Failed ? 1 : 0;
    m_notDone += result.state == State::NotDone ? 1 : 0;
    AddMessages(result);
    if (result.problem) {
        m_code = m_code == ExitCode::Ok || m_code == ExitCode::Written ? result.problem->exit : m_code;
    }
    if (m_form.isJson) {
        AddJson(result);
    } else {
        AddText(result);
    }
    // Whoever ends the process now knows from the output which files are done.
    m_streams.data.flush();
}

void ApplyReport::End()
{
    if (m_form.isJson) {
        EndJson();
    } else if (!m_form.isQuiet) {
        m_streams.data << m_changed << (m_form.isDryRun ? " would change, " : " changed, ") << m_unchanged
                       << " unchanged, " << m_failed << " failed, " << m_notDone << " not done\n";
    }
}

void ApplyReport::AddMessages(const ApplyResult& result)
{
    if (result.problem) {
        m_streams.messages.Line(LineOf(*result.problem));
        PrintExcerpt(m_streams.messages, *result.problem);
    }
    for (const std::string& note : result.notes) {
        if (!m_form.isQuiet) {
            m_streams.messages.Line(note);
        }
    }
    // The report for people has a line of each file anyway.
    if (m_form.isVerbose && m_form.isJson && result.state != State::Failed) {
        const bool isForeseen = m_form.isDryRun && result.state == State::Changed;
        m_streams.messages.Line(result.file + ": " + (isForeseen ? "would be " : "") +
                                std::string(NameOf(result.state)));
    }
}

void ApplyReport::AddText(const ApplyResult& result)
{
    if (!m_form.isQuiet && result.state != State::Failed) {
        AddLine(result);  // of a failure the problem is the line
    }
    if (m_form.hasDiff) {
        WriteDiff(m_streams.data, result.diff, m_form.hasColour);
    } else if (!m_form.isQuiet) {
        m_streams.data << result.differences;
    }
}

void ApplyReport::AddLine(const ApplyResult& result)
{
    WriteVisible(m_streams.data, result.file, Backslash::Kept);
    m_streams.data << ": " << (m_form.isDryRun && result.state == State::Changed ? "would be " : "")
                   << NameOf(result.state);
    if (m_form.countsEdits && result.state == State::Changed) {
        m_streams.data << " (" << result.edits << (result.edits == 1 ? " edit" : " edits") << ')';
    }
    if (result.backup) {
        m_streams.data << ", backup ";
        WriteVisible(m_streams.data, *result.backup, Backslash::Kept);
    }
    m_streams.data << '\n';
}

void ApplyReport::AddJson(const ApplyResult& result)
{
    m_json.BeginObject();
    m_json.Member("file", result.file);
    m_json.Member("result", NameOf(result.state));
    m_json.Key("edits").Number(result.edits);
    m_json.Key("backup").TextOrNull(result.backup);
    if (m_form.hasDiff && !result.problem) {
        m_json.Member("diff", result.diff);
    }
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
