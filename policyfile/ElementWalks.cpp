#include "policyfile/ElementWalks.h"

namespace zupm {

using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

Element FirstChildNamed(const Element& parent, std::u16string_view name)
{
    for (const Element child : ElementChildren(parent)) {
        if (child.NameIs(name)) {
            return child;
        }
    }
    return {};
}

Element FirstPolicy(const Element& root)
{
    for (const Element policyRoot : ElementChildren(root)) {
        if (!policyRoot.NameIs(u"PolicyRoot")) {
            continue;
        }
        for (const Element group : ElementChildren(policyRoot)) {
            const Element policy = group.NameIs(u"PolicyGroup") ? FirstChildNamed(group, u"Policy") : Element();
            if (!policy.IsNull()) {
                return policy;
            }
        }
    }
    return {};
}

}  // namespace zupm
