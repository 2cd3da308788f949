#include "DiskModel.h"

#include <stdexcept>

namespace zupm::test {

namespace {

/// More changes than this have too many combinations to look at.
constexpr std::size_t kMostPending = 16;

}  // namespace

void DiskModel::AddFile(DiskNode node, const FileState& state)
{
    m_files[node] = {state, {state.bytes}, {state.mode}};
}

void DiskModel::Apply(const DiskCall& call)
{
    using enum DiskCall::Kind;
    switch (call.kind) {
        case CreateFile:
            AddFile(call.node, {"", call.mode});
            m_folders.at(call.folder).pending.push_back({{call.name, call.node}});
            break;
        case CreateFolder:
            AddFolder(call.node);
            m_folders.at(call.folder).pending.push_back({{call.name, call.node}});
            break;
        case Truncate:
            m_files.at(call.node).now.bytes.clear();
            m_files.at(call.node).bytes.insert("");
            break;
        case Write:
            this->Write(m_files.at(call.node), call.bytes);
            break;
        case SetMode:
            m_files.at(call.node).now.mode = call.mode;
            m_files.at(call.node).modes.insert(call.mode);
            break;
        case Rename: {
            Folder& folder = m_folders.at(call.folder);
            folder.pending.push_back({{call.name, std::nullopt}, {call.newName, NodeNow(folder, call.name)}});
            break;
        }
        case Unlink:
            m_folders.at(call.folder).pending.push_back({{call.name, std::nullopt}});
            break;
        case Flush:
            this->Flush(call.node);
            break;
    }
}

void DiskModel::Write(File& file, const std::string& bytes)
{
    const std::string& before = file.now.bytes;
    file.bytes.insert(before + bytes.substr(0, bytes.size() / 2));
    file.bytes.insert(before + std::string(bytes.size(), '\0'));
    file.now.bytes += bytes;
    file.bytes.insert(file.now.bytes);
}

void DiskModel::Flush(DiskNode node)
{
    if (const auto file = m_files.find(node); file != m_files.end()) {
        AddFile(node, FileState(file->second.now));
        return;
    }
    Folder& folder = m_folders.at(node);
    for (const NameChange& change : std::exchange(folder.pending, {})) {
        for (const auto& [name, target] : change) {
            if (target) {
                folder.names[name] = *target;
            } else {
                folder.names.erase(name);
            }
        }
    }
}

DiskNode DiskModel::NodeNow(const Folder& folder, const std::string& name) const
{
    for (auto change = folder.pending.rbegin(); change != folder.pending.rend(); ++change) {
        if (const auto found = change->find(name); found != change->end()) {
            return found->second.value();
        }
    }
    return folder.names.at(name);
}

std::set<std::optional<DiskNode>> DiskModel::NodesAfterLoss(const Folder& folder, const std::string& name)
{
    if (folder.pending.size() > kMostPending) {
        throw std::length_error("too many changes of one folder");
    }
    std::set<std::optional<DiskNode>> nodes;
    for (std::size_t kept = 0; kept < std::size_t{1} << folder.pending.size(); ++kept) {
        const auto onDisk = folder.names.find(name);
        std::optional<DiskNode> node = onDisk == folder.names.end() ? std::nullopt : std::optional(onDisk->second);
        for (std::size_t i = 0; i < folder.pending.size(); ++i) {
            const auto change = folder.pending[i].find(name);
            if ((kept >> i & 1) != 0 && change != folder.pending[i].end()) {
                node = change->second;
            }
        }
        nodes.insert(node);
    }
    return nodes;
}

FoundStates DiskModel::StatesOf(DiskNode node) const
{
    FoundStates states;
    const File& file = m_files.at(node);
    for (const std::string& bytes : file.bytes) {
        for (const mode_t mode : file.modes) {
            states.insert(FileState{bytes, mode});
        }
    }
    return states;
}

FoundStates DiskModel::AfterLoss(DiskNode folder, const std::vector<std::string>& path) const
{
    FoundStates states;
    for (const std::optional<DiskNode> node : NodesAfterLoss(m_folders.at(folder), path.front())) {
        if (!node) {
            states.insert(std::nullopt);
        } else {
            states.merge(path.size() == 1 ? StatesOf(*node) : AfterLoss(*node, {path.begin() + 1, path.end()}));
        }
    }
    return states;
}

}  // namespace zupm::test
