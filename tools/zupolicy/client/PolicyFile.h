/// A policy file that is open in this process.
#pragma once

#include <zuPolicyManager/client/Edit.h>
#include <zuPolicyManager/client/PolicyFile.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "tools/zupolicy/client/Entry.h"
#include "tools/zupolicy/client/Notices.h"
#include "tools/zupolicy/client/Target.h"

namespace zupm::tool {

/// Why a file is loaded: to be read only, or to be changed and written to another path.
enum class Access { ReadOnly, Copy };

/// What the component reports about a whole file.
struct FileVersions {
    std::string policy;
    std::string task;
    std::string assignmentList;
};

/// Throws ProblemFailure (FileError) for a file name that is not valid UTF-8: the component takes no other.
void RequireName(const std::string& path);

/// A policy file of the component, with the tool's own messages.
///
/// Lifetime  Entries taken from it are private copies and may outlive it.
/// Errors    Every call that fails throws ProblemFailure, about the file or what is in it.
class PolicyFile {
public:
    /// Loads the file at a UTF-8 path; "-" is standard input.
    PolicyFile(const std::string& path, Access access);
    /// Opens, locks and loads the file at a UTF-8 path in order to replace it; waits up to `patience` for another
    /// editor. The lock ends with Commit and with the object.
    PolicyFile(const std::string& path, std::chrono::seconds patience);

    [[nodiscard]] const std::string& Path() const noexcept { return m_path; }

    /// A copy of the policy or task.
    [[nodiscard]] std::unique_ptr<Entry> Find(const Target& target);
    /// A copy of the task; `target` must have a task ID.
    [[nodiscard]] std::unique_ptr<TaskEntry> FindTask(const Target& target);
    /// A new policy or task with the target's IDs; the file has it only after Add.
    [[nodiscard]] std::unique_ptr<Entry> Create(const Target& target, const TaskFields& fields);

    void Add(Entry& entry) { entry.HandBack(m_file); }
    void Remove(const Target& target);
    /// Writes the document to any path, and replaces a file that is there.
    void Write(const std::string& path);
    /// Replaces the file that was opened to be replaced; throws ProblemFailure (Changed) when it is no longer the one
    /// that was loaded, unless forced.
    void Commit(bool force);
    /// Throws what Commit would throw, as far as that can be known without writing.
    void RehearseCommit(bool force);

    [[nodiscard]] FileVersions Versions();
    [[nodiscard]] tool::Notices Notices();

private:
    [[nodiscard]] Subject SubjectFor(const Target& target) const;
    [[nodiscard]] std::unique_ptr<Entry> FindPolicy(const Target& target);

    std::string m_path;
    zupm::PolicyFile m_file;
    std::optional<zupm::Edit> m_edit;
};

}  // namespace zupm::tool
