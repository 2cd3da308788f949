/// The shape of a policy file: the names of its elements and attributes, and the walks over them.
#pragma once

#include <cstdint>
#include <string_view>

#include "xml/Node.h"

namespace zupm {

/// Elements and attributes under the names that the file has them by, indented as they are nested. An entry "name,
/// name" is an attribute of the element above it.
namespace schema {

inline constexpr std::u16string_view kPolicyRoot = u"PolicyRoot";
inline constexpr std::u16string_view kPolicyGroup = u"PolicyGroup";
inline constexpr std::u16string_view kPolicy = u"Policy";
inline constexpr std::u16string_view kProduct = u"Product";
inline constexpr std::u16string_view kTaskRoot = u"TaskRoot";
inline constexpr std::u16string_view kTaskGroup = u"TaskGroup";
inline constexpr std::u16string_view kTask = u"Task";
inline constexpr std::u16string_view kSection = u"Section";  ///< written so, read under any name
inline constexpr std::u16string_view kSetting = u"Setting";  ///< likewise

// The attributes, each with the elements that have it.
inline constexpr std::u16string_view kVersion = u"version";                ///< of "PolicyRoot" and "TaskRoot"
inline constexpr std::u16string_view kAssignmentList = u"AssignmentList";  ///< of "PolicyRoot"
inline constexpr std::u16string_view kPath = u"Path";                      ///< of "PolicyGroup" and "TaskGroup"
inline constexpr std::u16string_view kPathId = u"PathID";                  ///< of "Policy" and "Task"
inline constexpr std::u16string_view kPolicyVersion = u"PolicyVersion";    ///< of "Policy"
inline constexpr std::u16string_view kSoftwareId = u"SoftwareID";          ///< of "Product" and "TaskGroup"
// Of "TaskGroup"; the version of "Task", too.
inline constexpr std::u16string_view kTaskId = u"TaskID";
inline constexpr std::u16string_view kDisplayName = u"DisplayName";
inline constexpr std::u16string_view kCreatorId = u"CreatorID";
inline constexpr std::u16string_view kPlatforms = u"Platforms";
inline constexpr std::u16string_view kTaskType = u"TaskType";
inline constexpr std::u16string_view kTaskPriority = u"TaskPriority";
inline constexpr std::u16string_view kTaskVersion = u"TaskVersion";
// Of sections and settings; an element without it is neither.
inline constexpr std::u16string_view kName = u"name";

/// The levels down to products and tasks. Nothing below them is looked at before the product or task was copied, so
/// documents need not know what is there.
inline constexpr std::uint32_t kLevelsOfFile = 5;  ///< PolicyRoot, PolicyGroup, Policy, Product below the root
inline constexpr std::uint32_t kLevelsOfText = 3;  ///< Policy, Product and TaskGroup, Task below the root

/// The "PathID" of every policy and task that is written back, and the "Path" of groups that have none.
inline constexpr std::u16string_view kDefaultPath = u"0_4";

}  // namespace schema

/// The first child element; null when there is none.
[[nodiscard]] inline AdvXMLParser::Element FirstChild(const AdvXMLParser::Element& parent) noexcept
{
    return *parent.Begin();
}

/// The first child of that name; null when there is none.
[[nodiscard]] AdvXMLParser::Element FirstChildNamed(const AdvXMLParser::Element& parent, std::u16string_view name);

/// The first child whose attribute has exactly that text; null when there is none. A child without the attribute never
/// matches, not even the empty text.
[[nodiscard]] AdvXMLParser::Element FindChildByAttribute(const AdvXMLParser::Element& parent,
                                                         std::u16string_view attribute, std::u16string_view text);

/// Deletes the first section of that name and no other one; false when the container has none.
[[nodiscard]] bool DeleteFirstSection(const AdvXMLParser::Element& container, std::u16string_view name);

/// The first "Policy" of a policy file in document order, groups without one passed over; null when there is none.
[[nodiscard]] AdvXMLParser::Element FirstPolicy(const AdvXMLParser::Element& root);

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

/// Visits every "Policy" of every "PolicyGroup" of every "PolicyRoot" in document order.
template <class Visit>
void ForEachPolicy(const AdvXMLParser::Element& root, Visit visit)
{
    ForEachChild(root, schema::kPolicyRoot, [&](const AdvXMLParser::Element& policyRoot) {
        ForEachChild(policyRoot, schema::kPolicyGroup,
                     [&](const AdvXMLParser::Element& group) { ForEachChild(group, schema::kPolicy, visit); });
    });
}

/// Visits every "TaskGroup" of every "TaskRoot" in document order.
template <class Visit>
void ForEachTaskGroup(const AdvXMLParser::Element& root, Visit visit)
{
    ForEachChild(root, schema::kTaskRoot,
                 [&](const AdvXMLParser::Element& taskRoot) { ForEachChild(taskRoot, schema::kTaskGroup, visit); });
}

}  // namespace zupm
