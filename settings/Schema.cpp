#include "settings/Schema.h"

#include <string>

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

Element FindChildByAttribute(const Element& parent, std::u16string_view attribute, std::u16string_view text)
{
    std::u16string value;
    for (const Element child : ElementChildren(parent)) {
        if (child.ReadAttribute(attribute, value) && value == text) {
            return child;
        }
    }
    return {};
}

bool DeleteFirstSection(const Element& container, std::u16string_view name)
{
    Element section = FindChildByAttribute(container, schema::kName, name);
    if (section.IsNull()) {
        return false;
    }
    // Given: see docs/given-oddities.md, "only the first goes".
    section.Delete();
    return true;
}

Element FirstPolicy(const Element& root)
{
    for (const Element policyRoot : ElementChildren(root)) {
        if (!policyRoot.NameIs(schema::kPolicyRoot)) {
            continue;
        }
        for (const Element group : ElementChildren(policyRoot)) {
            const Element policy =
                group.NameIs(schema::kPolicyGroup) ? FirstChildNamed(group, schema::kPolicy) : Element();
            if (!policy.IsNull()) {
                return policy;
            }
        }
    }
    return {};
}

}  // namespace zupm
