#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tools/zupolicy/commands/Commands.h"
#include "tools/zupolicy/commands/Options.h"
#include "tools/zupolicy/commands/PageFiles.h"
#include "tools/zupolicy/model/Change.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/report/ChangeReport.h"

namespace zupm::tool {
namespace {

struct DiffOptions {
    std::string before;
    std::string after;
    bool ignoreVersions = false;
    bool json = false;
    bool html = false;
    std::string output = "-";
};

/// Prints differences as they are found, and knows whether there was one.
class Differences {
public:
    Differences(std::ostream& out, bool isJson) : m_out(out), m_isJson(isJson), m_json(out, JsonWriter::Form::OneLine)
    {
    }

    void Compare(std::string_view what, const std::string& before, const std::string& after)
    {
        if (before == after) {
            return;
        }
        m_hasOne = true;
        if (m_isJson) {
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
        if (m_isJson) {
            WriteAsEdits(m_json, change);
        } else {
            WriteAsText(m_out, change);
        }
    }
    [[nodiscard]] bool HasOne() const noexcept { return m_hasOne; }

private:
    std::ostream& m_out;
    bool m_isJson;
    JsonWriter m_json;
    bool m_hasOne = false;
};

/// A file with the IDs of its entries in file order. The entries themselves are read one by one.
struct Side {
    zupm::PolicyFile file;
    std::vector<model::EntryId> ids;
};

Side Load(const std::string& path)
{
    zupm::PolicyFile file = model::OpenToRead(path);
    std::vector<model::EntryId> ids = model::Ids(file);
    return {std::move(file), std::move(ids)};
}

std::optional<model::Entry> Find(const Side& side, const model::EntryId& id)
{
    std::optional<model::Entry> entry = model::Find(side.file, id);
    if (entry) {
        DropRepeated(*entry);
    }
    return entry;
}

void CompareEntry(const Side& before, const Side& after, const model::EntryId& id, Differences& differences)
{
    const std::optional<model::Entry> one = Find(before, id);
    const std::optional<model::Entry> other = Find(after, id);
    differences.Add(model::Compare(one ? &*one : nullptr, other ? &*other : nullptr));
}

/// Policies, or tasks: those of OLD in its order, then those that only NEW has.
void CompareEntries(const Side& before, const Side& after, bool tasks, Differences& differences)
{
    const auto isOther = [&](const model::EntryId& id) { return id.taskId.has_value() != tasks; };
    const std::set<model::EntryId> known(before.ids.begin(), before.ids.end());
    for (const model::EntryId& id : before.ids) {
        if (!isOther(id)) {
            CompareEntry(before, after, id, differences);
        }
    }
    for (const model::EntryId& id : after.ids) {
        if (!isOther(id) && !known.contains(id)) {
            CompareEntry(before, after, id, differences);
        }
    }
}

ExitCode Compare(const Side& before, const Side& after, const DiffOptions& options, std::ostream& out)
{
    Differences differences(out, options.json);
    differences.Compare("assignmentList", before.file.AssignmentList(), after.file.AssignmentList());
    if (!options.ignoreVersions) {
        differences.Compare("policyVersion", before.file.PolicyVersion(), after.file.PolicyVersion());
        differences.Compare("taskVersion", before.file.TaskVersion(), after.file.TaskVersion());
    }
    CompareEntries(before, after, false, differences);
    CompareEntries(before, after, true, differences);
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
    PageData data;
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
    return [options](Streams streams) { return RunDiff(*options, streams); };
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
