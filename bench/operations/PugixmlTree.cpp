#include <pugixml.hpp>

#include "bench/Demand.h"
#include "bench/operations/Peers.h"

namespace zupm::bench {

namespace {

class PugixmlTree final : public Tree {
public:
    PugixmlTree(const std::string& path, unsigned options)
    {
        Demand(static_cast<bool>(m_document.load_file(path.c_str(), options)), "pugixml: load");
    }

    [[nodiscard]] std::string RootName() const override { return m_document.document_element().name(); }

    void Set(const std::string& softwareId, const std::string& setting, const std::string& value) override
    {
        const pugi::xml_node product = m_document.find_node([&](const pugi::xml_node& node) {
            return softwareId == node.attribute("SoftwareID").value() && node.child("Section");
        });
        const pugi::xml_node element =
            product.find_node([&](const pugi::xml_node& node) { return setting == node.attribute("name").value(); });
        Demand(static_cast<bool>(element), "pugixml: find");
        element.text().set(value.c_str());
    }

    void Write(const std::string& path) override
    {
        Demand(m_document.save_file(path.c_str(), "", pugi::format_raw), "pugixml: write");
    }

private:
    pugi::xml_document m_document;
};

}  // namespace

std::unique_ptr<Tree> LoadWithPugixml(const std::string& path)
{
    return std::make_unique<PugixmlTree>(path, pugi::parse_default);
}

std::unique_ptr<Tree> LoadWithPugixmlFull(const std::string& path)
{
    return std::make_unique<PugixmlTree>(path, pugi::parse_full);
}

}  // namespace zupm::bench
