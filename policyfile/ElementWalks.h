/// Walks over the skeleton of a policy file.
#pragma once

#include <string_view>

#include "xml/Node.h"

namespace zupm {

/// Visits the children of that name in document order.
template <class Visit>
void ForEachChild(const AdvXMLParser::Element& parent, std::u16string_view name, Visit visit)
{
    for (const AdvXMLParser::Element child : AdvXMLParser::ElementChildren(parent)) {
        if (child.NameIs(name)) {
            visit(child);
        }
    }
}

/// Visits every "Policy" of every "PolicyGroup" of every "PolicyRoot".
template <class Visit>
void ForEachPolicy(const AdvXMLParser::Element& root, Visit visit)
{
    ForEachChild(root, u"PolicyRoot", [&](const AdvXMLParser::Element& policyRoot) {
        ForEachChild(policyRoot, u"PolicyGroup",
                     [&](const AdvXMLParser::Element& group) { ForEachChild(group, u"Policy", visit); });
    });
}

/// Visits every "TaskGroup" of every "TaskRoot".
template <class Visit>
void ForEachTaskGroup(const AdvXMLParser::Element& root, Visit visit)
{
    ForEachChild(root, u"TaskRoot",
                 [&](const AdvXMLParser::Element& taskRoot) { ForEachChild(taskRoot, u"TaskGroup", visit); });
}

/// The first child of that name; null when there is none.
[[nodiscard]] AdvXMLParser::Element FirstChildNamed(const AdvXMLParser::Element& parent, std::u16string_view name);

/// The first "Policy" in document order, groups without one passed over; null when there is none.
[[nodiscard]] AdvXMLParser::Element FirstPolicy(const AdvXMLParser::Element& root);

}  // namespace zupm
