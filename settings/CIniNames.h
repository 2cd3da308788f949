/// The settings that one INI file has.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace zupm {

/// The names of the settings that were written into one INI file, which knows neither case nor blanks at a name's ends.
class CIniNames {
public:
    /// Notes a setting; false when the file takes it for one that was noted before. Throws std::bad_alloc.
    bool Add(std::u16string_view section, std::u16string_view key);

private:
    std::set<std::pair<std::u16string, std::u16string>> m_names;
};

}  // namespace zupm
