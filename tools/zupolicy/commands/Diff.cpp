#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/zupolicy/client/contents/Contents.h"
#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/PageFiles.h"
#include "tools/zupolicy/commands/RedactOption.h"
#include "tools/zupolicy/model/CompareSides.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/report/ChangeReport.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::tool {
namespace {

struct DiffOptions {
    std::string before;
    std::string after;
    bool ignoreVersions = false;
    bool json = false;
    bool html = false;
    std::string output = "-";
    Redaction hidden;
};

/// The reason why no edit can put an entry into the file; empty when one can.
std::string ObstacleIn(const std::string& path, const model::EntryId& id)
{
    const std::string_view missing = MissingElement(ReadContents(path).places, {id.softwareId, id.taskId});
    return missing.empty() ? std::string() : path + " has no " + std::string(missing) + " element to put it in";
}

/// Prints differences as they are found, and knows whether there was one.
class Differences {
public:
    Differences(std::ostream& out, const DiffOptions& options)
        : m_out(out), m_options(options), m_json(out, JsonWriter::Form::OneLine)
    {
        m_style.redaction = options.hidden;
    }

    void Compare(std::string_view what, const std::string& before, const std::string& after)
    {
        if (before == after) {
            return;
        }
        m_hasOne = true;
        if (m_options.json) {
            WriteAsEdit(m_json, {what, before, after});
        } else {
            WriteAsText(m_out, FileDifference{what, before, after});
        }
    }
    void Add(const model::EntryChange& change)
    {
        if (change.IsEmpty()) {
            return;
        }
        m_hasOne = true;
        if (!m_options.json) {
            WriteAsText(m_out, change, m_style);
        } else if (const std::string obstacle = ObstacleTo(change); !obstacle.empty()) {
            WriteAsUnsupported(m_json, change.id, obstacle);
        } else {
            WriteAsEdits(m_json, change, m_style);
        }
    }
    [[nodiscard]] bool HasOne() const noexcept { return m_hasOne; }

private:
    /// The file is read again for it, once for policies and once for tasks.
    [[nodiscard]] std::string ObstacleTo(const model::EntryChange& change)
    {
        // Standard input cannot be read again.
        if (change.kind != model::EntryChange::Kind::Added || m_options.before == "-") {
            return {};
        }
        std::optional<std::string>& known = change.id.taskId ? m_obstacleToTasks : m_obstacleToPolicies;
        if (!known) {
            known = ObstacleIn(m_options.before, change.id);
        }
        return *known;
    }

    std::ostream& m_out;
    const DiffOptions& m_options;
    ChangeStyle m_style;
    JsonWriter m_json;
    std::optional<std::string> m_obstacleToPolicies;
    std::optional<std::string> m_obstacleToTasks;
    bool m_hasOne = false;
};

/// A file with the IDs of its entries in file order. The entries themselves are read one by one.
struct Side {
    std::string path;
    zupm::PolicyFile file;
    std::vector<model::EntryId> ids;

    [[nodiscard]] std::optional<model::Entry> Find(const model::EntryId& id) const
    {
        std::optional<model::Entry> entry = model::Find(file, id);
        if (entry) {
            DropRepeated(*entry);
        }
        return entry;
    }
};

Side Load(const std::string& path)
{
    try {
        zupm::PolicyFile file = model::OpenToRead(path);
        std::vector<model::EntryId> ids = model::Ids(file);
        return {path, std::move(file), std::move(ids)};
    } catch (const std::exception&) {
        throw ProblemFailure(CurrentProblem(path));
    }
}

ExitCode Compare(const Side& before, const Side& after, const DiffOptions& options, std::ostream& out)
{
    Differences differences(out, options);
    differences.Compare("assignmentList", before.file.AssignmentList(), after.file.AssignmentList());
    if (!options.ignoreVersions) {
        differences.Compare("policyVersion", before.file.PolicyVersion(), after.file.PolicyVersion());
        differences.Compare("taskVersion", before.file.TaskVersion(), after.file.TaskVersion());
    }
    model::CompareSides(before, after, [&](const model::EntryChange& change) { differences.Add(change); });
    return differences.HasOne() ? ExitCode::NotFound : ExitCode::Ok;
}

/// The page has edits that `apply` takes, so the versions are no edits there.
ExitCode ComparePage(const Side& before, const Side& after, const DiffOptions& options, std::ostream& out)
{
    RequireOtherFile(options.output, {options.before, options.after});
    const bool sameVersions = options.ignoreVersions || (before.file.PolicyVersion() == after.file.PolicyVersion() &&
                                                         before.file.TaskVersion() == after.file.TaskVersion());
    DiffOptions asEdits = options;
    asEdits.json = true;
    asEdits.ignoreVersions = true;
    std::ostringstream edits;
    const ExitCode code = Compare(before, after, asEdits, edits);
    PageData data(options.hidden, PageData::Hidden::Different);
    data.Add(ReadForPage(options.before, before.file));
    data.Add(ReadForPage(options.after, after.file));
    const std::string title = "Differences: " + options.before + ", " + options.after;
    WritePageTo(options.output, data,
                {PageHead::Kind::Differences, title, options.ignoreVersions, std::move(edits).str()}, out);
    return sameVersions ? code : ExitCode::NotFound;
}

ExitCode RunDiff(const DiffOptions& options, Streams streams)
{
    const Side before = Load(options.before);
    const Side after = Load(options.after);
    return options.html ? ComparePage(before, after, options, streams.data)
                        : Compare(before, after, options, streams.data);
}

Action DeclareDiff(CLI::App& line)
{
    const auto options = std::make_shared<DiffOptions>();
    line.add_option("OLD", options->before, "The file before")->required();
    line.add_option("NEW", options->after, "The file after")->required();
    line.add_flag("--ignore-versions", options->ignoreVersions, "Leave out the versions of the files");
    CLI::Option* const json =
        line.add_flag("--json", options->json, "Print edits as JSON, one a line, which apply can make");
    CLI::Option* const html =
        line.add_flag("--html", options->html, "Write a page of HTML that shows the files side by side");
    html->excludes(json);
    AddPageOutput(line, options->output)->needs(html);
    AddRedact(line, options->hidden);
    return [options](Streams streams) {
        return Hiding(options->hidden, streams, [&] { return RunDiff(*options, streams); });
    };
}

}  // namespace

constinit const Command kDiff{
    .name = "diff",
    .description =
        "Compare what two policy files mean: policies, tasks, sections and settings, whatever their order, "
        "encoding and layout. Exit code 0: no difference; 1: there are differences",
    .examples =
        "  zupolicy diff policy.xml new.xml\n"
        "  zupolicy diff policy.xml new.xml --ignore-versions\n"
        "  zupolicy diff policy.xml new.xml --ignore-versions --json > edits.jsonl\n"
        "  zupolicy diff policy.xml new.xml --html -o diff.html",
    .declare = DeclareDiff,
};

}  // namespace zupm::tool
