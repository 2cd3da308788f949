#include "fuzz/support/PeerComparison.h"

#include <cstddef>
#include <string>

#include "fuzz/support/Demand.h"
#include "fuzz/support/ElementWalk.h"
#include "text/Utf.h"
#include "xml/TagScanner.h"

namespace zupm::fuzz {

using AdvXMLParser::Element;
using AdvXMLParser::SpanTree;
using AdvXMLParser::TagScanner;

namespace {

std::size_t CountAttributes(std::string_view startTag)
{
    TagScanner scanner(startTag);
    std::size_t count = 0;
    while (scanner.Next()) {
        ++count;
    }
    return count;
}

void DemandSame(std::u16string_view ours, const std::string& peers, std::string_view what)
{
    const std::string narrow = ToUtf8Lossy(ours);
    Demand(narrow == peers, what, "ours \"" + narrow + "\", the peer's \"" + peers + "\"");
}

void DemandSameAttributes(const Element& element, std::string_view startTag, const PeerElement& peer)
{
    Demand(CountAttributes(startTag) == peer.attributes.size(), "an element has as many attributes", startTag);
    for (const auto& [name, value] : peer.attributes) {
        const std::u16string wideName = ToUtf16(name).value();
        const AdvXMLParser::Attribute attribute = element.GetAttribute(wideName);
        Demand(!attribute.IsNull(), "an element has the same attributes", name);
        DemandSame(attribute.GetText(), value, "an attribute has the same value");
        Demand(attribute.TextIs(attribute.GetText()), "an attribute's text is what it is compared with", name);
    }
}

}  // namespace

void DemandSameElements(const AdvXMLParser::Document& document, const SpanTree& tree, const PeerDocument& peer)
{
    ElementWalk walk(document, tree);
    for (const PeerElement& other : peer.elements) {
        Demand(!walk.IsDone(), "no element is missing", other.name);
        const Element element = walk.Current();
        Demand(walk.Depth() == other.depth, "elements are nested alike", other.name);
        DemandSame(element.GetName(), other.name, "an element has the same name");
        DemandSameAttributes(element, walk.StartTag(), other);
        DemandSame(element.GetText(), other.text, "an element has the same text");
        walk.Next();
    }
    Demand(walk.IsDone(), "there is no further element");
}

}  // namespace zupm::fuzz
