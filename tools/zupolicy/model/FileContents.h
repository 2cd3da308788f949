/// What a policy file holds, as the tool shows it: plain UTF-8 records in document order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zupm::tool {

/// Line and column count from 1; they are of the start tag.
struct Setting {
    std::string name;
    std::string value;
    std::uint64_t line = 0;
    std::uint64_t column = 0;
};

struct Section {
    std::string name;
    std::vector<Setting> settings;
};

struct Policy {
    std::string softwareId;
    std::string version;
    std::vector<Section> sections;
};

/// Fields that the file does not have are empty.
struct Task {
    std::string softwareId;
    std::string taskId;
    std::string displayName;
    std::string type;
    std::string platforms;
    std::string creator;
    std::string priority;
    std::string version;
    std::vector<Section> sections;
};

/// An entry that the component never reaches, because an earlier one has the same key. Line and column count from 1.
struct Duplicate {
    std::uint64_t line = 0;
    std::uint64_t column = 0;
    std::string message;
};

struct FileContents {
    std::string policyVersion;
    std::string taskVersion;
    std::string assignmentList;
    std::vector<Policy> policies;
    std::vector<Task> tasks;
    std::vector<Duplicate> duplicates;
};

}  // namespace zupm::tool
