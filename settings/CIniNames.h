/// The settings that one INI file has.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace zupm {

/// The settings that were written into one INI file, which ignores case and blanks at the ends of names.
class CIniNames {
public:
    /// Notes a setting. False when the file takes it for one that was noted before with another value: that value is
    /// lost. Throws std::bad_alloc.
    bool Add(std::u16string_view section, std::u16string_view key, std::u16string_view value);

private:
    /// A hash of the last value of each. Values may be long, and only a log line depends on them.
    std::map<std::pair<std::u16string, std::u16string>, std::size_t> m_values;
};

}  // namespace zupm
