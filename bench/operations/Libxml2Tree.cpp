#include <libxml/parser.h>
#include <libxml/tree.h>

#include "bench/Demand.h"
#include "bench/operations/Peers.h"

namespace zupm::bench {

namespace {

const xmlChar* Xml(const std::string& text)
{
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

struct DocumentFreer {
    void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
};

class Libxml2Tree final : public Tree {
public:
    explicit Libxml2Tree(const std::string& path)
        : m_document(xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_HUGE))
    {
        Demand(m_document != nullptr, "libxml2: load");
    }

    [[nodiscard]] std::string RootName() const override
    {
        return reinterpret_cast<const char*>(xmlDocGetRootElement(m_document.get())->name);
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

}  // namespace

std::unique_ptr<Tree> LoadWithLibxml2(const std::string& path)
{
    return std::make_unique<Libxml2Tree>(path);
}

}  // namespace zupm::bench
