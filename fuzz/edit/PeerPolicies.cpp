#include "fuzz/edit/PeerPolicies.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "fuzz/support/Demand.h"
#include "text/Utf.h"

namespace zupm::fuzz {

namespace {

using Index = std::size_t;

/// Elements by name and attributes, only as libxml2 read them.
class Reader {
public:
    Reader(const PeerDocument& document, const Known& known) : m_elements(document.elements), m_known(known) {}

    void ReadInto(Snapshot& snapshot) const
    {
        ForEach({"PolicyRoot", "PolicyGroup", "Policy", "Product"}, [&](Index product, Index) {
            if (const auto id = AttributeOf(product, "SoftwareID"); id && m_known.products.contains(*id)) {
                snapshot.products.try_emplace(*id, SettingsOf(product));
            }
        });
        ForEach({"TaskRoot", "TaskGroup", "Task"}, [&](Index task, Index group) {
            const auto softwareId = AttributeOf(group, "SoftwareID");
            const auto taskId = AttributeOf(group, "TaskID");
            if (softwareId && taskId && m_known.tasks.contains({*softwareId, *taskId})) {
                snapshot.tasks.try_emplace({*softwareId, *taskId}, SettingsOf(task));
            }
        });
    }

private:
    /// Visits elements at the end of a path of names below the root, with their parents.
    template <class Visit>
    void ForEach(std::initializer_list<std::string_view> path, Visit visit) const
    {
        std::vector<Index> parents{0};
        for (auto name = path.begin(); name != path.end(); ++name) {
            std::vector<Index> found;
            for (const Index parent : parents) {
                for (const Index child : ChildrenOf(parent)) {
                    if (m_elements[child].name != *name) {
                        continue;
                    }
                    found.push_back(child);
                    if (name + 1 == path.end()) {
                        visit(child, parent);
                    }
                }
            }
            parents = std::move(found);
        }
    }

    [[nodiscard]] std::vector<Index> ChildrenOf(Index parent) const
    {
        std::vector<Index> children;
        const std::size_t depth = m_elements[parent].depth;
        for (Index i = parent + 1; i < m_elements.size() && m_elements[i].depth > depth; ++i) {
            if (m_elements[i].depth == depth + 1) {
                children.push_back(i);
            }
        }
        return children;
    }

    [[nodiscard]] std::optional<std::u16string> AttributeOf(Index element, std::string_view name) const
    {
        const auto& attributes = m_elements[element].attributes;
        const auto found =
            std::find_if(attributes.begin(), attributes.end(), [&](const auto& a) { return a.first == name; });
        return found == attributes.end() ? std::nullopt : ToUtf16(found->second);
    }

    /// Every child with a name is a section, every child of that with a name a setting; the first of a name counts.
    [[nodiscard]] Settings SettingsOf(Index container) const
    {
        Settings settings;
        for (const Index section : ChildrenOf(container)) {
            const auto sectionName = AttributeOf(section, "name");
            if (!sectionName) {
                continue;
            }
            for (const Index setting : ChildrenOf(section)) {
                const auto name = AttributeOf(setting, "name");
                if (name && m_known.settings.contains({*sectionName, *name})) {
                    settings.try_emplace({*sectionName, *name}, ToUtf16(m_elements[setting].text).value());
                }
            }
        }
        return settings;
    }

    const std::vector<PeerElement>& m_elements;
    const Known& m_known;
};

}  // namespace

void DemandSameInPeer(const PeerDocument& document, const Snapshot& snapshot, const Known& known)
{
    Snapshot peers;
    Reader(document, known).ReadInto(peers);
    Demand(peers.products == snapshot.products, "libxml2 finds the same settings of products");
    Demand(peers.tasks == snapshot.tasks, "libxml2 finds the same settings of tasks");
}

}  // namespace zupm::fuzz
