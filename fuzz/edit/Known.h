/// The names that a script of edits uses, and that are checked afterwards.
#pragma once

#include <set>
#include <string>
#include <utility>

namespace zupm::fuzz {

/// Two names: a section and a setting, or a software ID and a task ID.
using NamePair = std::pair<std::u16string, std::u16string>;

struct Known {
    std::set<std::u16string> products;
    std::set<NamePair> tasks;
    std::set<NamePair> settings;
};

}  // namespace zupm::fuzz
