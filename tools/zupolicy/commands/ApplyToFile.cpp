#include "tools/zupolicy/commands/ApplyToFile.h"

#include <zuPolicyManager/Client.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

#include "tools/zupolicy/client/Backup.h"
#include "tools/zupolicy/client/Interrupt.h"
#include "tools/zupolicy/client/StandardInput.h"
#include "tools/zupolicy/commands/FieldNotes.h"
#include "tools/zupolicy/commands/FileText.h"
#include "tools/zupolicy/model/MakeObjects.h"
#include "tools/zupolicy/model/ReadFile.h"
#include "tools/zupolicy/model/WriteEntry.h"
#include "tools/zupolicy/report/ChangeReport.h"
#include "tools/zupolicy/report/Explain.h"
#include "tools/zupolicy/report/NearestName.h"
#include "tools/zupolicy/report/Visible.h"

namespace zupm::tool {
namespace {

using model::EntryId;

/// The run was interrupted while it waited for the lock.
struct Interrupted {};

/// The state of each policy and task that the edits are about, as the file has it and as the edits leave it.
class States {
public:
    States(const zupm::PolicyFile& file, const ApplyTask& task) : m_file(file), m_task(task) {}

    /// Makes every edit; returns the number of those that made a difference. Throws ProblemFailure.
    std::size_t MakeAll();
    /// Puts what differs in the end into the document; returns whether anything does.
    [[nodiscard]] bool Write(std::ostream& differences);
    /// The entries that were in the file and that Write has changed, without their sections.
    [[nodiscard]] const std::vector<model::Entry>& Rewritten() const noexcept { return m_rewritten; }

private:
    struct State {
        std::optional<model::Entry> before;
        std::optional<model::Entry> after;
    };

    [[nodiscard]] State& StateOf(const EntryId& id);
    [[nodiscard]] std::size_t WriteEntry(const model::EntryChange& change,
                                         const std::optional<model::Entry>& after) const;
    [[noreturn]] void Refuse(const model::EditRequest& edit, const model::Refusal& refusal) const;
    [[nodiscard]] std::string SimilarTo(const EntryId& id) const;

    const zupm::PolicyFile& m_file;
    const ApplyTask& m_task;
    std::map<EntryId, State> m_states;
    std::vector<EntryId> m_order;
    std::vector<model::Entry> m_rewritten;
};

States::State& States::StateOf(const EntryId& id)
{
    const auto found = m_states.find(id);
    if (found != m_states.end()) {
        return found->second;
    }
    State state{model::Find(m_file, id), {}};
    if (state.before) {
        DropRepeated(*state.before);
    }
    state.after = state.before;
    m_order.push_back(id);
    return m_states.emplace(id, std::move(state)).first->second;
}

std::size_t States::MakeAll()
{
    std::size_t effective = 0;
    for (const model::EditRequest& edit : m_task.edits) {
        try {
            effective += std::size_t{model::Make(edit, StateOf(edit.id).after)};
        } catch (const model::Refusal& refusal) {
            Refuse(edit, refusal);
        }
    }
    for (auto& [id, state] : m_states) {
        if (state.after) {
            DropRepeated(*state.after);
        }
    }
    return effective;
}

bool States::Write(std::ostream& differences)
{
    bool differs = false;
    for (const EntryId& id : m_order) {
        const State& state = m_states.at(id);
        if (!state.before && !state.after) {
            continue;
        }
        const model::EntryChange change =
            model::Compare(state.before ? &*state.before : nullptr, state.after ? &*state.after : nullptr);
        if (change.IsEmpty()) {
            continue;
        }
        differs = true;
        if (state.before && state.after) {
            m_rewritten.push_back({id, state.after->fields, {}});
        }
        WriteAsText(differences, change, {.redaction = m_task.redaction, .linePrefix = {}, .writeMembers = {}});
        const std::size_t others = WriteEntry(change, state.after);
        if (others != 0) {
            differences << "- " << Describe(id) << " (" << others << (others == 1 ? " other one" : " other ones")
                        << " of this ID)\n";
        }
    }
    return differs;
}

/// As model::Write; a failure names the policy or task.
std::size_t States::WriteEntry(const model::EntryChange& change, const std::optional<model::Entry>& after) const
{
    try {
        return model::Write(m_file, change, after);
    } catch (const Error&) {
        Problem problem = CurrentProblem(m_file.Path());
        if (const std::string about = Describe(change.id) + ": "; !problem.message.starts_with(about)) {
            problem.message = about + problem.message;
        }
        throw ProblemFailure(problem);
    }
}

std::string States::SimilarTo(const EntryId& id) const
{
    if (std::string complaint = ComplaintOfIds(id.softwareId, id.taskId); !complaint.empty()) {
        return complaint;
    }
    NearestName nearest(id.taskId ? *id.taskId : id.softwareId);
    if (id.taskId) {
        for (const std::string& taskId : m_file.TaskIds(id.softwareId)) {
            nearest.Offer(taskId);
        }
    } else {
        for (const std::string& softwareId : m_file.PolicyIds()) {
            nearest.Offer(softwareId);
        }
    }
    return nearest.Best() ? "did you mean " + Quoted(*nearest.Best()) + "?" : "the edit \"create\" adds it";
}

void States::Refuse(const model::EditRequest& edit, const model::Refusal& refusal) const
{
    const std::string place =
        " (" + m_task.editsName + ":" + std::to_string(edit.place.line) + ":" + std::to_string(edit.place.column) + ")";
    const std::string about = Describe(edit.id) + ": ";
    if (refusal.reason == model::Refusal::Reason::NoSuchEntry) {
        const result::Code code = edit.id.taskId ? result::TaskNotFound : result::PolicyNotFound;
        throw ProblemFailure({code, ExitCode::NotFound, m_file.Path(), 0, 0, about + client::SentenceOf(code) + place,
                              SimilarTo(edit.id)});
    }
    if (refusal.reason == model::Refusal::Reason::Exists) {
        throw ProblemFailure({{},
                              ExitCode::Other,
                              m_file.Path(),
                              0,
                              0,
                              about + "exists already, and differs" + place,
                              "--replace makes it like the entry, --merge sets what the entry has"});
    }
    throw ProblemFailure({{},
                          ExitCode::Other,
                          m_file.Path(),
                          0,
                          0,
                          about + "setting " + Shortened(refusal.name) + " of section " + Shortened(refusal.section) +
                              " repeats a field of the task and cannot be edited on its own" + place,
                          "set the field: displayName, type, platforms or priority"});
}

/// Opens and locks the file. The wait is in short pieces, so that Ctrl-C ends it.
zupm::Edit OpenLocked(const std::string& path, const ApplyTask& task)
{
    RequireReplaceable(path);
    constexpr std::chrono::milliseconds kPiece(200);
    const auto end = std::chrono::steady_clock::now() + task.patience;
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        try {
            return {model::MakeFile(path), std::clamp(left, std::chrono::milliseconds(0), kPiece)};
        } catch (const Locked&) {
            if (Interrupt::IsAsked()) {
                throw Interrupted();
            }
            if (left <= kPiece) {
                throw;
            }
        }
    }
}

/// Replaces the file, with a backup of it when one is wanted. A backup of a file that was not replaced goes again.
void Replace(const zupm::Edit& edit, const ApplyTask& task, ApplyResult& result)
{
    if (task.backupSuffix) {
        result.backup = WriteBackup(result.file, *task.backupSuffix);
    }
    try {
        edit.Commit(task.force ? IfChanged::Overwrite : IfChanged::Refuse);
    } catch (const NotFlushed&) {
        result.problem = CurrentProblem(result.file);
    } catch (...) {
        if (result.backup) {
            RemoveBackup(*result.backup);
            result.backup.reset();
        }
        throw;
    }
}

void Apply(const ApplyTask& task, ApplyResult& result)
{
    const zupm::Edit edit = OpenLocked(result.file, task);
    States states(edit.File(), task);
    const std::size_t effective = states.MakeAll();
    std::ostringstream differences;
    if (!states.Write(differences)) {
        result.state = ApplyResult::State::Unchanged;
        return;
    }
    result.notes = NotesOnFields(result.file, states.Rewritten());
    if (task.diff) {
        result.diff = Difference(result.file, result.file, TextOfFile(result.file, task.redaction),
                                 TextOfDocument(edit.File(), task.redaction), *task.diff);
    }
    if (task.dryRun) {
        if (task.backupSuffix) {
            RehearseBackup(result.file, *task.backupSuffix);
        }
        edit.Rehearse(task.force ? IfChanged::Overwrite : IfChanged::Refuse);
        result.differences = differences.str();
    } else {
        Replace(edit, task, result);
    }
    result.edits = effective;
    result.state = ApplyResult::State::Changed;
}

}  // namespace

ApplyResult ApplyToFile(const std::string& file, const ApplyTask& task)
{
    ApplyResult result;
    result.file = file;
    try {
        Apply(task, result);
    } catch (const Interrupted&) {
        result.state = ApplyResult::State::NotDone;
    } catch (const std::exception&) {
        result.state = ApplyResult::State::Failed;
        result.problem = CurrentProblem(file);
    }
    return result;
}

}  // namespace zupm::tool
