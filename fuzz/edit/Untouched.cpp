#include "fuzz/edit/Untouched.h"

#include <memory>
#include <utility>

#include "fuzz/support/ElementWalk.h"
#include "platform/common/Utf.h"
#include "platform/xml/ExpatGate.h"

namespace zupm::fuzz {

using AdvXMLParser::Document;
using AdvXMLParser::Element;
using AdvXMLParser::SpanTree;

namespace {

/// An element with everything in it.
std::string TextOf(const SpanTree& tree, std::uint32_t element)
{
    const std::string_view start = tree.StartTag(element);
    const std::string_view end = tree.IsEmptyTag(element) ? start : tree.EndTag(element);
    return {start.data(), end.data() + end.size()};
}

bool IsPath(const std::vector<Element>& path, std::initializer_list<std::u16string_view> names)
{
    if (path.size() != names.size() + 1) {
        return false;
    }
    auto at = path.begin();
    for (const std::u16string_view name : names) {
        if (!(++at)->NameIs(name)) {
            return false;
        }
    }
    return true;
}

bool IsUntouched(const std::vector<Element>& path, const Known& known)
{
    if (IsPath(path, {u"PolicyRoot", u"PolicyGroup", u"Policy", u"Product"})) {
        return !known.products.contains(path.back().GetAttribute(u"SoftwareID").GetText());
    }
    if (IsPath(path, {u"TaskRoot", u"TaskGroup", u"Task"})) {
        const Element& group = path[path.size() - 2];
        return !known.tasks.contains(
            {group.GetAttribute(u"SoftwareID").GetText(), group.GetAttribute(u"TaskID").GetText()});
    }
    return false;
}

}  // namespace

std::vector<std::string> UntouchedTexts(std::u16string_view text, const Known& known)
{
    std::unique_ptr<SpanTree> owned = AdvXMLParser::BuildTree(ToUtf8(text).value(), std::nullopt);
    const SpanTree& tree = *owned;
    const Document document(std::move(owned));
    std::vector<std::string> texts;
    std::vector<Element> path;
    for (ElementWalk walk(document, tree); !walk.IsDone(); walk.Next()) {
        path.resize(walk.Depth());
        path.push_back(walk.Current());
        if (IsUntouched(path, known)) {
            texts.push_back(TextOf(tree, walk.Record()));
        }
    }
    return texts;
}

}  // namespace zupm::fuzz
