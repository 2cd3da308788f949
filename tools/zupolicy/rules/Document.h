/// A policy file as rules see it: objects and texts that are found by their names.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/zupolicy/client/contents/FileContents.h"

namespace zupm::rules {

/// An object, or a text.
struct Node {
    struct Member;

    bool isText = false;
    std::string_view text;
    std::vector<Member> members;  ///< sorted by name, no two of one name
    tool::Offset at = 0;          ///< its element, or for what has none the one that it would be in

    /// Null when there is none.
    [[nodiscard]] const Node* Find(std::string_view name) const;
};

struct Node::Member {
    std::string_view name;
    Node value;
};

/// The whole file:
///
///     {"policyVersion": "...", "taskVersion": "...", "assignmentList": "...",
///      "policies": {SOFTWARE-ID: {SECTION: {NAME: VALUE}}},
///      "tasks": {SOFTWARE-ID: {TASK-ID: {"displayName": "...", "type": "...", "platforms": "...", "priority": "...",
///                                        "creator": "...", "version": "...", "sections": {SECTION: {NAME: VALUE}}}}}}
///
/// Names and values are those of the contents, which must outlive it.
[[nodiscard]] Node DocumentOf(const tool::FileContents& contents);

/// Where a value is in the document: the names that lead to it.
using Path = std::vector<std::string_view>;

/// "policy PRODUCTA1000 General/ScanInterval", "task PRODUCTA1000 {task-1} priority", "the file".
[[nodiscard]] std::string Describe(const Path& path);

/// "/policies/PRODUCTA1000/General/ScanInterval".
[[nodiscard]] std::string PointerOf(const Path& path);

/// The section and the setting, or without a section the task's field, whose value the path leads to; two empty names
/// for any other path.
struct ValueName {
    std::string_view section;
    std::string_view name;
    bool isTask = false;
};
[[nodiscard]] ValueName ValueNameOf(const Path& path);

}  // namespace zupm::rules
