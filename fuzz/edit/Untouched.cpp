#include "fuzz/edit/Untouched.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <utility>

#include "fuzz/support/ElementWalk.h"
#include "text/Utf.h"
#include "xml/BuildTree.h"

namespace zupm::fuzz {

using AdvXMLParser::Document;
using AdvXMLParser::Element;
using AdvXMLParser::SpanTree;

namespace {

using Path = std::vector<Element>;

bool IsPath(const Path& path, std::initializer_list<std::u16string_view> names)
{
    // The document element may have any name.
    return path.size() == names.size() + 1 &&
           std::equal(names.begin(), names.end(), path.begin() + 1,
                      [](std::u16string_view name, const Element& element) { return element.NameIs(name); });
}

bool IsProduct(const Path& path)
{
    return IsPath(path, {u"PolicyRoot", u"PolicyGroup", u"Policy", u"Product"});
}

bool IsGroup(const Path& path)
{
    return IsPath(path, {u"TaskRoot", u"TaskGroup"});
}

bool IsSkeleton(const Path& path)
{
    return IsGroup(path) || IsPath(path, {u"PolicyRoot"}) || IsPath(path, {u"PolicyRoot", u"PolicyGroup"}) ||
           IsPath(path, {u"PolicyRoot", u"PolicyGroup", u"Policy"}) || IsPath(path, {u"TaskRoot"});
}

bool IsKnown(const Path& path, const Known& known)
{
    const Element& element = path.back();
    if (IsProduct(path)) {
        return known.products.contains(element.GetAttribute(u"SoftwareID").GetText());
    }
    return IsGroup(path) && known.tasks.contains({element.GetAttribute(u"SoftwareID").GetText(),
                                                  element.GetAttribute(u"TaskID").GetText()});
}

/// Goes through a document and takes out what an edit may have changed.
class Search {
public:
    Search(const SpanTree& tree, const Known& known) : m_tree(tree), m_known(known), m_left(tree.ParsedText()) {}

    Untouched Run(const Document& document)
    {
        std::size_t touchedDepth = 0;
        for (ElementWalk walk(document, m_tree); !walk.IsDone(); walk.Next()) {
            m_path.resize(walk.Depth());
            m_path.push_back(walk.Current());
            if (touchedDepth == 0 || walk.Depth() <= touchedDepth) {
                touchedDepth = Look(walk.Record()) ? walk.Depth() : 0;
            }
        }
        std::erase_if(m_left, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
        m_found.outside = std::move(m_left);
        return std::move(m_found);
    }

private:
    /// Whether the element, with everything in it, may have been edited.
    bool Look(std::uint32_t element)
    {
        const std::string_view start = m_tree.StartTag(element);
        const std::string_view end = m_tree.IsEmptyTag(element) ? start : m_tree.EndTag(element);
        const std::string_view whole(start.data(), static_cast<std::size_t>(end.data() - start.data()) + end.size());
        if (IsKnown(m_path, m_known)) {
            TakeOut(whole);
            return true;
        }
        if (IsProduct(m_path) || IsPath(m_path, {u"TaskRoot", u"TaskGroup", u"Task"})) {
            m_found.entries.emplace_back(whole);
        } else if (IsSkeleton(m_path)) {
            TakeOut(start);
            TakeOut(end);
        }
        return false;
    }

    void TakeOut(std::string_view part)
    {
        const auto from = static_cast<std::size_t>(part.data() - m_tree.ParsedText().data());
        m_left.replace(from, part.size(), part.size(), ' ');
    }

    const SpanTree& m_tree;
    const Known& m_known;
    Path m_path;
    std::string m_left;
    Untouched m_found;
};

}  // namespace

Untouched FindUntouched(std::u16string_view text, const Known& known)
{
    std::unique_ptr<SpanTree> owned = AdvXMLParser::BuildTree(AdvXMLParser::XmlText(ToUtf8(text).value()));
    const SpanTree& tree = *owned;
    return Search(tree, known).Run(Document(std::move(owned)));
}

}  // namespace zupm::fuzz
