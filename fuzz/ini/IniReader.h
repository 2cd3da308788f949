/// A reader of INI text that shares nothing with the writer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zupm::fuzz {

/// What one line says.
struct IniLine {
    enum class Kind { Blank, Section, Setting, Other };

    Kind kind = Kind::Blank;
    std::u16string name;   ///< of the section or key, as it stands
    std::u16string value;  ///< as a reader gets it
    std::u16string raw;    ///< the whole line without its end

    friend bool operator==(const IniLine&, const IniLine&) = default;
};

using IniLines = std::vector<IniLine>;

/// All lines in order. Lines end at CR LF, LF or CR; a last line without an end counts.
[[nodiscard]] IniLines ReadIniLines(std::u16string_view text);

}  // namespace zupm::fuzz
