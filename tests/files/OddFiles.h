/// Policy files that are well-formed in unusual ways.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Encode.h"

namespace zupm::test {

/// One odd file. `@` is in the place of its "TaskRoot" version: a test puts in the current or an outdated one; every
/// other version attribute has the value that writing gives it. It holds the setting S/N of the product P1.
struct OddFile {
    std::string label;
    Form form;
    std::string text;
    std::u16string value = u"V";  ///< of the setting S/N
};

/// For gtest messages.
void PrintTo(const OddFile& file, std::ostream* out);

/// What `TaskRoot` of every odd file has as its version when it is up to date.
inline constexpr char kCurrentTaskVersion[] = "7";

/// All of them; labels are unique and fit test names.
[[nodiscard]] const std::vector<OddFile>& OddFiles();

/// The bytes of an odd file with that "TaskRoot" version.
[[nodiscard]] std::string BytesOf(const OddFile& file, std::string_view taskVersion);

}  // namespace zupm::test
