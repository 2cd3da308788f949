/// A reader of INI files that knows nothing of how the component writes them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zupm::test {

/// The text of a file: UTF-16 with a signature, otherwise UTF-8, otherwise one character a byte (a Latin code page).
[[nodiscard]] std::u16string DecodeIni(std::string_view bytes);

/// All lines that are not blank, in order, without the blanks at their ends.
[[nodiscard]] std::vector<std::u16string> IniLines(std::u16string_view text);

/// What a file says, as the system's own call takes it: lines end at CR, LF or both; a line that begins with `[` is a
/// section up to its last `]`; others are a key and a value, without blanks at their ends, the value without one pair
/// of quotes; a null character ends a name or value. Of a section or key that occurs twice the first counts.
class IniReader {
public:
    explicit IniReader(std::u16string_view text);

    /// What is read of a value that was written as it is.
    [[nodiscard]] static std::u16string AsRead(std::u16string_view value);

    [[nodiscard]] std::optional<std::u16string> Value(const std::u16string& section, const std::u16string& key) const;
    /// All "section/key" in order.
    [[nodiscard]] std::vector<std::u16string> Names() const;

private:
    void ReadLine(const std::u16string& line);

    std::map<std::u16string, std::map<std::u16string, std::u16string>> m_sections;
    std::u16string m_current;
};

}  // namespace zupm::test
