/// Elements in document order, as a client of the document library sees them and as they are kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "xml/Document.h"
#include "xml/SpanTree.h"

namespace zupm::fuzz {

/// A walk by handle and by record side by side. Both outlive it, and nothing is edited meanwhile.
class ElementWalk {
public:
    ElementWalk(const AdvXMLParser::Document& document, const AdvXMLParser::SpanTree& tree)
        : m_tree(tree), m_record(tree.FirstChild(AdvXMLParser::SpanTree::kDocument))
    {
        m_path.push_back({document.GetRoot(), {}});
    }

    [[nodiscard]] bool IsDone() const { return m_path.empty(); }
    [[nodiscard]] const AdvXMLParser::Element& Current() const { return m_path.back().element; }
    [[nodiscard]] std::size_t Depth() const { return m_path.size() - 1; }
    [[nodiscard]] std::uint32_t Record() const { return m_record; }
    [[nodiscard]] std::string_view StartTag() const { return m_tree.StartTag(m_record); }

    void Next()
    {
        if (const AdvXMLParser::ElementIterator child = Current().Begin(); !(*child).IsNull()) {
            m_path.push_back({*child, child});
            m_record = m_tree.FirstChild(m_record);
            return;
        }
        while (!m_path.empty() && !StepToSibling()) {
            m_path.pop_back();
            m_record = m_tree.Parent(m_record);
        }
    }

private:
    struct Step {
        AdvXMLParser::Element element;
        AdvXMLParser::ElementIterator at;
    };

    bool StepToSibling()
    {
        Step& step = m_path.back();
        if (m_path.size() == 1) {
            return false;
        }
        ++step.at;
        step.element = *step.at;
        if (step.element.IsNull()) {
            return false;
        }
        m_record = m_tree.NextSibling(m_record);
        return true;
    }

    const AdvXMLParser::SpanTree& m_tree;
    std::uint32_t m_record;
    std::vector<Step> m_path;
};

}  // namespace zupm::fuzz
