#include "RecordedCalls.h"

#include <fcntl.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "platform/posix/NativePath.h"
#include "platform/posix/SystemCalls.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

using native::kSystemCalls;
using native::SystemCalls;
using Kind = DiskCall::Kind;

/// The system uses a number again when nothing has it any more; the model does not.
struct State {
    std::map<ino_t, DiskNode> nodes;
    DiskNode last = 0;
    std::vector<DiskCall> calls;
};

State g_state;

DiskNode NewNode(ino_t number)
{
    return g_state.nodes[number] = ++g_state.last;
}

DiskNode NodeOf(int file)
{
    struct stat status {};
    if (::fstat(file, &status) != 0) {
        throw std::runtime_error("no status of an open file");
    }
    return g_state.nodes.at(status.st_ino);
}

struct stat StatusOf(int folder, const std::string& path)
{
    struct stat status {};
    if (::fstatat(folder, path.c_str(), &status, 0) != 0) {
        throw std::runtime_error("no status of " + path);
    }
    return status;
}

bool Exists(int folder, const char* path)
{
    struct stat status {};
    return ::fstatat(folder, path, &status, AT_SYMLINK_NOFOLLOW) == 0;
}

/// A call about a name in a folder.
DiskCall Named(Kind kind, int folder, const char* path)
{
    const native::FolderAndName parts = native::SplitPath(path);
    return {.kind = kind, .folder = g_state.nodes.at(StatusOf(folder, parts.folder).st_ino), .name = parts.name};
}

int OpenAt(int folder, const char* path, int flags, mode_t mode)
{
    const bool isNew = (flags & O_CREAT) != 0 && !Exists(folder, path);
    const int file = kSystemCalls.openat(folder, path, flags, mode);
    if (file >= 0 && isNew) {
        DiskCall call = Named(Kind::CreateFile, folder, path);
        const struct stat status = StatusOf(folder, path);
        call.node = NewNode(status.st_ino);
        call.mode = status.st_mode & 07777;
        g_state.calls.push_back(std::move(call));
    } else if (file >= 0 && (flags & O_TRUNC) != 0) {
        g_state.calls.push_back({.kind = Kind::Truncate, .node = NodeOf(file)});
    }
    return file;
}

int MakeFolder(int folder, const char* path, mode_t mode)
{
    const int made = kSystemCalls.mkdirat(folder, path, mode);
    if (made == 0) {
        DiskCall call = Named(Kind::CreateFolder, folder, path);
        call.node = NewNode(StatusOf(folder, path).st_ino);
        g_state.calls.push_back(std::move(call));
    }
    return made;
}

ssize_t Write(int file, const void* bytes, std::size_t count)
{
    const ssize_t written = kSystemCalls.write(file, bytes, count);
    if (written > 0) {
        std::string text(static_cast<const char*>(bytes), static_cast<std::size_t>(written));
        g_state.calls.push_back({.kind = Kind::Write, .node = NodeOf(file), .bytes = std::move(text)});
    }
    return written;
}

int SetMode(int file, mode_t mode)
{
    g_state.calls.push_back({.kind = Kind::SetMode, .node = NodeOf(file), .mode = mode});
    return kSystemCalls.fchmod(file, mode);
}

int Flush(int file)
{
    g_state.calls.push_back({.kind = Kind::Flush, .node = NodeOf(file)});
    return kSystemCalls.fsync(file);
}

int Rename(int oldFolder, const char* oldName, int newFolder, const char* newName)
{
    DiskCall call = Named(Kind::Rename, oldFolder, oldName);
    const DiskCall target = Named(Kind::Rename, newFolder, newName);
    if (call.folder != target.folder) {
        throw std::logic_error("the model knows no rename from one folder to another");
    }
    call.newName = target.name;
    g_state.calls.push_back(std::move(call));
    return kSystemCalls.renameat(oldFolder, oldName, newFolder, newName);
}

int Unlink(int folder, const char* name, int flags)
{
    g_state.calls.push_back(Named(Kind::Unlink, folder, name));
    return kSystemCalls.unlinkat(folder, name, flags);
}

SystemCalls RecordingCalls()
{
    SystemCalls calls = kSystemCalls;
    calls.openat = OpenAt;
    calls.mkdirat = MakeFolder;
    calls.write = Write;
    calls.fchmod = SetMode;
    calls.fsync = Flush;
    calls.renameat = Rename;
    calls.unlinkat = Unlink;
    return calls;
}

const SystemCalls kRecordingCalls = RecordingCalls();

/// Adds what is below `folder`; links are followed by name only, so they are no part of the model.
void AddBelow(DiskModel& disk, const std::string& folder, DiskNode node)
{
    disk.AddFolder(node);
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder)) {
        const std::string path = entry.path();
        if (entry.is_symlink()) {
            continue;
        }
        const struct stat status = StatusOf(AT_FDCWD, path);
        const DiskNode child = NewNode(status.st_ino);
        disk.AddName(node, entry.path().filename(), child);
        if (entry.is_directory()) {
            AddBelow(disk, path, child);
        } else {
            disk.AddFile(child, {ReadBytes(entry.path().u16string()), status.st_mode & 07777});
        }
    }
}

}  // namespace

RecordedCalls::RecordedCalls(const std::string& folder)
{
    g_state = {};
    m_folder = NewNode(StatusOf(AT_FDCWD, folder).st_ino);
    AddBelow(m_before, folder, m_folder);
    native::ReplaceSystemCalls(&kRecordingCalls);
}

RecordedCalls::~RecordedCalls()
{
    native::ReplaceSystemCalls(nullptr);
}

const std::vector<DiskCall>& RecordedCalls::Calls()
{
    return g_state.calls;
}

std::vector<FoundStates> RecordedCalls::Losses(const std::vector<std::string>& path) const
{
    DiskModel disk = m_before;
    std::vector<FoundStates> losses{disk.AfterLoss(m_folder, path)};
    for (const DiskCall& call : g_state.calls) {
        disk.Apply(call);
        losses.push_back(disk.AfterLoss(m_folder, path));
    }
    return losses;
}

}  // namespace zupm::test
