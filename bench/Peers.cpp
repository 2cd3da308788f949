#include "bench/Peers.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdio>
#include <cstdlib>
#include <pugixml.hpp>

namespace zupm::bench {

namespace {

void Demand(bool isDone, const char* step)
{
    if (!isDone) {
        std::fprintf(stderr, "%s failed\n", step);
        std::exit(1);
    }
}

const xmlChar* Xml(const std::string& text)
{
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

struct DocumentFreer {
    void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
};

class Libxml2Peer final : public Peer {
public:
    explicit Libxml2Peer(const std::string& path)
        : m_document(xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_HUGE))
    {
        Demand(m_document != nullptr, "libxml2: load");
    }

    void Set(const std::string& softwareId, const std::string& setting, const std::string& value) override
    {
        const xmlNode* product = Find(xmlDocGetRootElement(m_document.get()), "SoftwareID", softwareId);
        xmlNode* element = product == nullptr ? nullptr : Find(product->children, "name", setting);
        Demand(element != nullptr, "libxml2: find");
        xmlNodeSetContent(element, Xml(value));
    }

    void Write(const std::string& path) override
    {
        Demand(xmlSaveFile(path.c_str(), m_document.get()) > 0, "libxml2: write");
    }

private:
    /// Depth first, down to four levels: the shape of the file is known.
    static xmlNode* Find(xmlNode* first, const char* attribute, const std::string& value, int levels = 5)
    {
        for (xmlNode* node = first; node != nullptr && levels > 0; node = node->next) {
            if (node->type != XML_ELEMENT_NODE) {
                continue;
            }
            const xmlAttr* found = xmlHasProp(node, reinterpret_cast<const xmlChar*>(attribute));
            if (found != nullptr && found->children != nullptr && xmlStrEqual(found->children->content, Xml(value))) {
                return node;
            }
            if (xmlNode* below = Find(node->children, attribute, value, levels - 1)) {
                return below;
            }
        }
        return nullptr;
    }

    std::unique_ptr<xmlDoc, DocumentFreer> m_document;
};

class PugixmlPeer final : public Peer {
public:
    explicit PugixmlPeer(const std::string& path)
    {
        Demand(static_cast<bool>(m_document.load_file(path.c_str(), pugi::parse_full)), "pugixml: load");
    }

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

std::unique_ptr<Peer> LoadWithLibxml2(const std::string& path)
{
    return std::make_unique<Libxml2Peer>(path);
}

std::unique_ptr<Peer> LoadWithPugixml(const std::string& path)
{
    return std::make_unique<PugixmlPeer>(path);
}

}  // namespace zupm::bench
