#include <fstream>
#include <rapidxml/rapidxml.hpp>

#include "bench/PlainFiles.h"
#include "bench/operations/Peers.h"

namespace zupm::bench {

namespace {

class RapidxmlTree final : public Tree {
public:
    /// A text that is not well-formed ends the program with an exception.
    explicit RapidxmlTree(const std::string& path)
    {
        const std::size_t size = SizeOf(path);
        m_text = std::make_unique_for_overwrite<char[]>(size + 1);
        std::ifstream(path, std::ios::binary).read(m_text.get(), static_cast<std::streamsize>(size));
        m_text[size] = '\0';
        m_document.parse<0>(m_text.get());
    }

    [[nodiscard]] std::string RootName() const override
    {
        const rapidxml::xml_node<>* root = m_document.first_node();
        return {root->name(), root->name_size()};
    }

private:
    std::unique_ptr<char[]> m_text;  ///< the tree points into it
    rapidxml::xml_document<> m_document;
};

}  // namespace

std::unique_ptr<Tree> LoadWithRapidxml(const std::string& path)
{
    return std::make_unique<RapidxmlTree>(path);
}

}  // namespace zupm::bench
