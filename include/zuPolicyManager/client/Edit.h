/// Editing a policy file in place while others edit it too.
#pragma once

#include <zuPolicyManager/client/PolicyFile.h>

#include <chrono>
#include <string>
#include <string_view>
#include <utility>

namespace zupm {

/// What a commit does with a file that something else changed since it was loaded.
enum class IfChanged {
    Refuse,  ///< Throws Changed and leaves the file alone.
    Overwrite,
};

/// A policy file that is locked and loaded, to be replaced by Commit. Editors that lock take turns; see
/// IPolicyFileEdit.
///
/// Lifetime  The lock ends with Commit, with End and with this object. The file stays loaded for whoever has a copy of
///           it. Moved, not copied; what was moved from is empty and its calls throw Error (NotInitialised).
/// Threads   As PolicyFile, except that the end of the edit is the end for every thread.
/// Errors    Each call throws what Error.h lists.
class Edit {
public:
    /// Opens, locks and loads a file; waits up to `timeout` for whoever is editing it. Locked; FileError; SyntaxError
    /// and InvalidText with the place.
    [[nodiscard]] static Edit Open(std::string_view path, std::chrono::milliseconds timeout = kPatience)
    {
        return {PolicyFile(client::Create<IPolicyFile>(), std::string(path)), timeout};
    }
    /// The same with an object that the caller has, and the path in it.
    Edit(PolicyFile file, std::chrono::milliseconds timeout)
        : m_file(std::move(file)), m_edit(client::Require<IPolicyFileEdit>(ComPtr<IPolicyFile>(m_file.Get())))
    {
        Check(m_edit->OpenForEdit(client::Argument(m_file.Path()), client::ToMilliseconds(timeout)));
    }
    Edit(Edit&&) noexcept = default;
    Edit& operator=(Edit&& other) noexcept
    {
        if (this != &other) {
            End();
            m_file = std::move(other.m_file);
            m_edit = std::move(other.m_edit);
        }
        return *this;
    }
    ~Edit() { End(); }
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;

    /// The file; Save writes it as Commit does and ends the edit.
    [[nodiscard]] const PolicyFile& File() const noexcept { return m_file; }
    const PolicyFile* operator->() const noexcept { return &m_file; }

    /// Whether the file is no longer the one that was loaded. Error (NotInitialised): the edit is over.
    [[nodiscard]] bool HasChanged() const
    {
        LONG changed = 0;
        Check(Own().HasFileChanged(&changed));
        return changed != 0;
    }
    /// Throws what Commit would throw, as far as that can be known without writing.
    void Rehearse(IfChanged ifChanged = IfChanged::Refuse) const { Check(Own().RehearseCommit(Force(ifChanged))); }
    /// Replaces the file and ends the edit. Changed, FileError: the edit stays open; NotFlushed: the file is written.
    void Commit(IfChanged ifChanged = IfChanged::Refuse) const { Check(Own().CommitEdit(Force(ifChanged))); }
    /// Ends the edit without writing.
    void End() noexcept
    {
        if (m_edit) {
            m_edit->EndEdit();
        }
    }

private:
    [[nodiscard]] static LONG Force(IfChanged ifChanged) noexcept { return ifChanged == IfChanged::Overwrite ? 1 : 0; }
    [[nodiscard]] IPolicyFileEdit& Own() const
    {
        if (!m_edit) {
            client::ThrowEmpty();
        }
        return *m_edit;
    }
    void Check(HRESULT result) const
    {
        if (result < 0) {
            const std::string description = client::TakeDescription();
            client::ThrowFailed(static_cast<result::Code>(result), description, m_file.Path(), m_file.Path());
        }
    }

    PolicyFile m_file;
    ComPtr<IPolicyFileEdit> m_edit;
};

}  // namespace zupm
