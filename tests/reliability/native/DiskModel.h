/// A disk that may lose power at any moment, as pessimistic as the rules of the system allow.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace zupm::test {

/// A file or folder on the disk, whatever names it has.
using DiskNode = std::uint64_t;

/// A system call that changes the disk, or flushes something to it.
struct DiskCall {
    enum class Kind { CreateFile, CreateFolder, Truncate, Write, SetMode, Rename, Unlink, Flush };

    Kind kind;
    DiskNode node = 0;    ///< what is created, written or flushed
    DiskNode folder = 0;  ///< where it is created, renamed or unlinked
    std::string name{};
    std::string newName{};
    std::string bytes{};
    mode_t mode = 0;
};

/// What a file is after the loss. The mode represents everything that is kept beside the bytes.
struct FileState {
    std::string bytes;
    mode_t mode = 0;

    friend auto operator<=>(const FileState&, const FileState&) = default;
};

/// Every state that a name may be found in; nothing in place of a state: there is no such file.
using FoundStates = std::set<std::optional<FileState>>;

/// The disk and what of it may still be lost.
///
/// What was not flushed since may be there or not: of a file's bytes none, half, all, or zeros in their place; its
/// mode; and any choice of the changes to a folder's names, each of them (a rename too) whole or not at all. Nothing is
/// kept in order: a rename may last although the bytes of the renamed file, or an earlier change of the same folder, do
/// not.
class DiskModel {
public:
    /// What is on the disk from the beginning.
    void AddFolder(DiskNode node) { m_folders[node]; }
    void AddName(DiskNode folder, const std::string& name, DiskNode node) { m_folders[folder].names[name] = node; }
    void AddFile(DiskNode node, const FileState& state);

    void Apply(const DiskCall& call);

    /// The states that the file may be found in when the power fails now; `path` is one name per folder, then the
    /// file's.
    [[nodiscard]] FoundStates AfterLoss(DiskNode folder, const std::vector<std::string>& path) const;

private:
    struct File {
        FileState now;
        std::set<std::string> bytes;  ///< what may be left of them
        std::set<mode_t> modes;
    };
    /// Names that change together: to another node, or to none.
    using NameChange = std::map<std::string, std::optional<DiskNode>>;
    struct Folder {
        std::map<std::string, DiskNode> names;  ///< as they are on the disk
        std::vector<NameChange> pending;
    };

    void Write(File& file, const std::string& bytes);
    void Flush(DiskNode node);
    [[nodiscard]] DiskNode NodeNow(const Folder& folder, const std::string& name) const;
    /// What a name may lead to after the loss.
    [[nodiscard]] static std::set<std::optional<DiskNode>> NodesAfterLoss(const Folder& folder,
                                                                          const std::string& name);
    [[nodiscard]] FoundStates StatesOf(DiskNode file) const;

    std::map<DiskNode, File> m_files;
    std::map<DiskNode, Folder> m_folders;
};

}  // namespace zupm::test
